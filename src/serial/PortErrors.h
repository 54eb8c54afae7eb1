#pragma once

namespace zrk {

class RuntimeFailure;
struct Desk;

/// What else may be behind a failure, as the message box words it.
enum class PortErrorHint {
    OtherIo,       ///< "or other I/O problem"
    OtherDownload, ///< "or other download problem"
};

/// Shows "Error communicating with COM<number>" with the failure's description; MessageText keeps it.
/// Says nothing about what the user has cancelled. The box is modal, so the event loop runs inside the call.
void showPortError(Desk& desk, int portNumber, PortErrorHint hint, const RuntimeFailure& failure);

} // namespace zrk
