#pragma once

#include <functional>

class QWidget;

namespace zrk {

class AddressBoxes;
struct Loader;
struct LoaderWidgets;

/// The clicks and menu entries that are not handlers of the loader.
struct WindowActions {
    std::function<void()> mnuExit_Click;
    std::function<void()> mnuAbout_Click;
};

/// Connects every click, key and menu entry to its handler. Before each, the address box that is being edited
/// is entered; a failure that a handler lets out ends in a message box instead of the event loop.
void wireActions(const LoaderWidgets& widgets, Loader& loader, AddressBoxes& addresses,
                 const WindowActions& window);

} // namespace zrk
