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
    /// Whether the loader cannot take any other answer for it. Not so for the repeated BootIDs and for the
    /// flash programmer's version.
    bool exact = false;
};

/// The end of a run, seen from outside of the loader.
struct SoakEnd {
    QString status;               ///< "done", "timed out" and so on; "hung", "crashed"
    bool cancelled = false;       ///< by the user, while it ran
    bool mustBeCancelled = false; ///< and no other reason to stop came before
    bool limited = false;         ///< only the user's limit ended it, though it was not the user's turn
    bool refusalHeard = false;    ///< an "E" came to the loader's side
    QByteArray sent;              ///< what the loader handed to the line; empty: not known
    bool intact = false;          ///< the board's memories hold the images and nothing else has changed
    QStringList leftBehind = {};  ///< "an active operation", "an open port"
    std::vector<MetFault> faults;
};

/// Returns what is wrong with the end of a run, in the words of the table; "" if nothing is. A damaged image
/// under "done" is not wrong if the wire can have damaged it undetected.
[[nodiscard]] QString wrongEnd(const SoakPlan& plan, const SoakEnd& end);

/// Returns where the undetected damage was: "code", "address" ..., "answer"; "" if there was none.
[[nodiscard]] QString unnoticedDamage(const SoakPlan& plan, const SoakEnd& end);

/// Counts of runs and their ends.
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
