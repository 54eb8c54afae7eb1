#pragma once

namespace zrk {

class Plan;
struct CliOptions;
struct IniChoice;
struct Loader;

/// Fills the slots from the INI file and the options. Throws UsageError for a file or an address that an option
/// gives and that cannot be used, and for an image left out that nothing names.
void presetSlots(Loader& loader, const Plan& plan, const CliOptions& options, const IniChoice& ini);

} // namespace zrk
