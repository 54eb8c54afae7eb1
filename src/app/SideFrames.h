#pragma once

class QWidget;

namespace zrk {

struct LoaderWidgets;

/// Builds the frame "Comport control".
QWidget* buildPortFrame(LoaderWidgets& widgets, QWidget* parent);

/// Builds the address list with its button.
QWidget* buildAddressFrame(LoaderWidgets& widgets, QWidget* parent);

/// Builds the debug send pair, folded away.
QWidget* buildDebugSend(LoaderWidgets& widgets, QWidget* parent);

} // namespace zrk
