#pragma once

class QMainWindow;

namespace zrk {

class Binder;
struct LoaderWidgets;
struct Loader;

/// Builds the status bar: a panel for what is going on, one for counters, and one with the progress bar.
void buildStatusBar(LoaderWidgets& widgets, QMainWindow& window);

/// Shows the texts and the progress. While an operation waits without a transfer, for instance for an
/// erase, the progress bar runs to and fro.
void bindStatusBar(Binder& binder, const LoaderWidgets& widgets, Loader& loader);

} // namespace zrk
