#pragma once

namespace zrk {

class Binder;
class PortCatalog;
struct Loader;
struct LoaderWidgets;

/// Ties the main window's widgets to the loader's controls, both ways. While an operation runs, what
/// would start another one or stall it is grey, whatever its control says. The catalog must outlive the
/// widgets.
void bindWindow(Binder& binder, const LoaderWidgets& widgets, Loader& loader, const PortCatalog& catalog);

/// Ends what the binder cannot end by itself: the console's and the address list's listeners.
void unbindWindow(Loader& loader);

/// The order in which Tab goes through the window: by frames, as they stand.
void setTabOrders(const LoaderWidgets& widgets);

} // namespace zrk
