#pragma once

class QMainWindow;

namespace zrk {

class Binder;
struct Controls;
struct LoaderWidgets;

/// Builds the status bar: a panel for what is going on, one for counters, and one with the progress bar.
void buildStatusBar(LoaderWidgets& widgets, QMainWindow& window);

/// Keeps the panels from growing beyond their present widths: in a wider window the progress bar stays where
/// it is, and the room to its right stays empty.
void keepPanelWidths(const LoaderWidgets& widgets);

/// Shows the texts and the progress.
void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Controls& controls);

} // namespace zrk
