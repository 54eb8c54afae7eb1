#pragma once

namespace zrk {

class Binder;
struct Controls;
struct LoaderWidgets;

/// Names the controls for a screen reader: those of a slot with the slot, "UBoot image: address", and
/// displays with their value, "UBoot image: size 0x1F000".
void nameForScreenReader(Binder& binder, const LoaderWidgets& widgets, Controls& controls);

} // namespace zrk
