#pragma once

namespace zrk {

class RuntimeFailure;
struct Desk;

/// The other possible causes of a failure, as the message box words them.
enum class PortErrorHint {
    OtherIo,       ///< "or other I/O problem"
    OtherDownload, ///< "or other download problem"
};

/// Shows "Error communicating with COM<number>" with the failure's description; MessageText keeps it. Does
/// nothing if the user has cancelled. The box is modal; yields.
void showPortError(Desk& desk, int portNumber, PortErrorHint hint, const RuntimeFailure& failure);

} // namespace zrk
