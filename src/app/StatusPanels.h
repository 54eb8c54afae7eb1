#pragma once

#include <QProperty>

class QMainWindow;

namespace zrk {

class Binder;
struct Controls;
struct LoaderWidgets;

/// Builds the status bar: a panel for the state, one for counters, and one with the progress bar.
void buildStatusBar(LoaderWidgets& widgets, QMainWindow& window);

/// Gives the panels their places for a window that is so many pixels wide. They keep them at any other width
/// and with any text: a narrower window cuts them off, a wider one leaves room on their right.
void placeStatusPanels(const LoaderWidgets& widgets, int windowWidth);

/// Shows the texts and the progress, and a mark in the first panel while the protocols are muted.
void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Controls& controls, QProperty<bool>& muted);

} // namespace zrk
