#pragma once

#include "serial/SharedState.h"

namespace zrk {

class MessageBoxes;
class RuntimeFailure;

/// What else may be behind a failure, as the message box words it.
enum class PortErrorHint {
    OtherIo,       ///< "or other I/O problem"
    OtherDownload, ///< "or other download problem"
};

/// Shows "Error communicating with COM<number>" with the failure's description; MessageText keeps it.
/// The box is modal, so the event loop runs inside the call.
void showPortError(SharedState& state, MessageBoxes& boxes, int portNumber, PortErrorHint hint,
                   const RuntimeFailure& failure);

} // namespace zrk
