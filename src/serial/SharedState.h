#pragma once

#include <QProperty>
#include <QString>

#include <array>
#include <chrono>
#include <cstdint>

namespace zrk {

/// What the windows, the timers and the long operations share. One per loader, passed to those who
/// read or write it; all of it belongs to the user-interface thread.
struct SharedState {
    bool CancelRequested = false;           ///< the running wait or operation is to stop when it next looks
    QProperty<bool> OperationActive{false}; ///< a long operation is running
    bool DebugMode = false;                 ///< the protocols' own transmissions are muted; never cleared
    bool TerminalMode = false;
    QString LastChar;    ///< the character most recently read by a protocol step
    QString MessageText; ///< prompt of the message box being raised; last address error
    QString IniPath;     ///< full path of the configuration file
    std::array<QString, 8> SlotNames;
    std::int32_t BytesSent = 0;  ///< code bytes handed over by the current image transfer
    std::int32_t BytesTotal = 0; ///< code bytes of the current image transfer
    QString WaitingFor;          ///< what an operation without a time limit waits for; empty: nothing
    std::chrono::steady_clock::time_point WaitingSince;
    QString AwaitedText;         ///< text that a running script waits for; empty: none
    bool ReceivedIsHeld = false; ///< what arrives stays unread for a script's next wait
};

} // namespace zrk
