#pragma once

namespace zrk {

class Binder;
class PortCatalog;
struct Loader;
struct LoaderWidgets;

/// Binds the main window's widgets to the loader's controls, both ways. While an operation runs, controls
/// that would start another one or stall it are grey, whatever their value. The catalog must outlive the
/// widgets.
void bindWindow(Binder& binder, const LoaderWidgets& widgets, Loader& loader, const PortCatalog& catalog);

/// Removes the console's and the address list's listeners, which the binder cannot remove.
void unbindWindow(Loader& loader);

/// Sets the order of the Tab key: frame by frame, from top to bottom.
void setTabOrders(const LoaderWidgets& widgets);

} // namespace zrk
