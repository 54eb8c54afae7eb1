#pragma once

class QMainWindow;

namespace zrk {

class Binder;
struct Controls;
struct LoaderWidgets;

/// Builds the status bar: a panel for what is going on, one for counters, and one with the progress bar.
void buildStatusBar(LoaderWidgets& widgets, QMainWindow& window);

/// Shows the texts and the progress.
void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Controls& controls);

} // namespace zrk
