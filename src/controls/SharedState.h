#pragma once

#include "controls/Outcome.h"
#include "controls/SentImage.h"
#include "controls/SlotTable.h"
#include "controls/StatusRemark.h"

#include <QProperty>
#include <QString>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

namespace zrk {

/// The place of a transfer in a series.
struct Series {
    int number = 0;               ///< from 1
    int count = 0;                ///< less than 2: no series
    std::int64_t bytesBehind = 0; ///< of the transfers that come after
};

/// The reason for a wait that the protocol does not limit.
enum class Awaited {
    PowerOn,
    Port,
    Start, ///< the first output of a started program
    Text,
    Checksum,
    PgSibl, ///< the start of pg_sibl
    Version,
    Prepare, ///< of the flash, before the data
    Erase,
    Program,
    Finish,
    Complete,
    NextBoard,
};

/// The shared state of windows, timers and long operations. One per loader, passed to its readers and
/// writers; all of it belongs to the user-interface thread.
struct SharedState {
    bool CancelRequested = false;           ///< the running wait or operation is to stop at its next check
    QProperty<bool> OperationActive{false}; ///< a long operation is running
    Outcome StopReason = Outcome::Done;     ///< the first reason why the running operation is to stop
    QString StopText; ///< which limit ran out and what was waited for, when StopReason is LimitReached
    QProperty<bool> DebugMode{false}; ///< the protocols' own transmissions are muted; never cleared
    bool TerminalMode = false;
    bool Asking = false;         ///< a message box waits for the user
    bool ReceivedIsHeld = false; ///< what arrives stays unread for a script's next wait
    /// Set from a failure after the flash header frame, which begins to erase, until the next operation: the
    /// flash may be erased or half written.
    bool FlashStateUnknown = false;
    QString LastChar;     ///< the character most recently read by a protocol step
    QString MessageText;  ///< prompt of the message box being raised; last address error
    QString IniPath;      ///< full path of the configuration file
    QString DialogFolder; ///< where the file dialogs begin: the program's own folder
    QString HeardBehind;  ///< what terminal mode has received after the text that a script waited for last
    StatusRemark Remark;
    QString Unanswered; ///< the request that the reply time-out ran out for, in words
    QString LastSent;   ///< what the board's next answer is about, in words
    std::array<QString, 8> SlotNames;
    std::int32_t BytesSent = 0;      ///< code bytes handed over by the current image transfer
    std::int32_t BytesTotal = 0;     ///< code bytes of the current image transfer
    std::int64_t BytesSentInAll = 0; ///< code bytes handed over since the loader was made
    int SendingSlot = 0;             ///< the slot of that transfer
    /// The time when the running operation handed over its first code byte.
    std::optional<std::chrono::steady_clock::time_point> SendingSince;
    Series Images;                    ///< the running transfer's place among those of its operation
    QProperty<QString> PgSiblVersion; ///< the version text of pg_sibl; empty: not received yet
    /// For each slot's file, once it has been sent whole and until it is chosen or sent again.
    std::array<QProperty<std::optional<SentImage>>, kSlotCount> Sent;
    QString WrongAnswer; ///< which byte the board sent and which was expected, in words
    /// Which image files had another length than announced, and what that means for the board, in words.
    QString OtherLength;
    QString LineErrorsText; ///< what was damaged on the line during the last transfers, in words
    QString WaitingFor;     ///< what an operation without a time limit waits for; empty: nothing
    Awaited WaitingKind = Awaited::PowerOn; ///< the same for programs
    std::chrono::steady_clock::time_point WaitingSince;
    QString AwaitedText; ///< text that a running script waits for; empty: none

    /// Asks the running wait or operation to stop.
    void requestStop(Outcome why) {
        CancelRequested = true;
        noteStop(why);
    }
    /// Notes why the operation is about to end by itself.
    void noteStop(Outcome why) {
        if (StopReason == Outcome::Done)
            StopReason = why;
    }
    /// Clears the request to stop.
    void withdrawStop() {
        CancelRequested = false;
        StopText.clear();
        StopReason = Outcome::Done;
    }
};

} // namespace zrk
