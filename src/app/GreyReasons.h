#pragma once

#include <QString>

namespace zrk {

class Binder;
struct Loader;
struct LoaderWidgets;

/// Makes every grey control's tool tip say why it is grey and what to do.
void bindGreyReasons(Binder& binder, const LoaderWidgets& widgets, Loader& loader);

/// Returns the tool tip of a control that has to wait for an operation's end.
[[nodiscard]] QString reasonWhileBusy();

} // namespace zrk
