#pragma once

#include <QString>

namespace zrk {

class Binder;
struct Loader;
struct LoaderWidgets;

/// Lets every grey control's tool tip say why it is grey and what to do.
void bindGreyReasons(Binder& binder, const LoaderWidgets& widgets, Loader& loader);

/// The tool tip of what has to wait for an operation's end.
[[nodiscard]] QString reasonWhileBusy();

} // namespace zrk
