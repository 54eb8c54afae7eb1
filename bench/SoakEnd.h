#pragma once

#include "SoakPlan.h"
#include "board/WireFaults.h"

#include <QStringList>

#include <map>

namespace zrkbench {

/// A fault that a run met.
struct MetFault {
    zrkboard::WireFault kind = zrkboard::WireFault::Flip;
    bool toBoard = false;
    std::uint64_t position = 0; ///< of the byte in its direction, from 0
    /// Of an answer: the loader cannot take any other one for it. Not so for the repeated BootIDs and for
    /// what the flash programmer says about itself.
    bool exact = false;
};

/// How a run ended, seen from outside of the loader.
struct SoakEnd {
    QString status;               ///< "done", "timed out" and so on; "hung", "crashed"
    bool cancelled = false;       ///< by the user, while it ran
    bool mustBeCancelled = false; ///< and nothing else had asked it to stop before
    bool limited = false;         ///< only the user's limit ended it, though it was not the user's turn
    bool refusalHeard = false;    ///< an "E" came to the loader's side
    QByteArray sent;              ///< what the loader handed to the line; empty: not known
    bool intact = false;          ///< the board's memories hold the images and nothing else has changed
    QStringList leftBehind = {};  ///< "an active operation", "an open port"
    std::vector<MetFault> faults;
};

/// What is wrong about the end of a run, in the words of the table; "" for nothing. A damaged image under
/// "done" is nothing wrong as long as the wire can have damaged it unnoticed.
[[nodiscard]] QString wrongEnd(const SoakPlan& plan, const SoakEnd& end);

/// Where the damage was that went unnoticed: "code", "address" ..., "answer"; "" when there was none.
[[nodiscard]] QString unnoticedDamage(const SoakPlan& plan, const SoakEnd& end);

/// Counts runs.
struct SoakTable {
    void add(const SoakPlan& plan, const SoakEnd& end);
    void print(const char* title) const;

    int runs = 0;
    int faulty = 0; ///< met a fault
    std::map<QString, int> statuses;
    std::map<QString, int> unnoticed;
    std::map<QString, std::vector<std::uint64_t>> wrong; ///< what, and the seeds
};

} // namespace zrkbench
