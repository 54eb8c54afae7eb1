#pragma once

#include <functional>

class QWidget;

namespace zrk {

class AddressBoxes;
struct Loader;
struct LoaderWidgets;

/// What clicks and menu entries do beyond the loader's handlers.
struct WindowActions {
    std::function<void()> mnuExit_Click;
    std::function<void()> mnuAbout_Click;
};

/// Leads every click, key and menu entry to its handler. Before each the address box that is being
/// edited is entered, and what a handler lets out ends in a message box instead of the event loop.
void wireActions(const LoaderWidgets& widgets, Loader& loader, AddressBoxes& addresses,
                 const WindowActions& window);

} // namespace zrk
