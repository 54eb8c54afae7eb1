#pragma once

namespace zrk {

class Binder;
struct Controls;
struct LoaderWidgets;

/// Names the controls for a screen reader: those of a slot tell which, "UBoot image: address", and what
/// only displays a value is named with it, "UBoot image: size 0x1F000".
void nameForScreenReader(Binder& binder, const LoaderWidgets& widgets, Controls& controls);

} // namespace zrk
