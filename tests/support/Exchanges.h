#pragma once

#include "support/Rig.h"

namespace zrktest {

// A bring-up of a small primary boot and a small secondary executable: what the board answers, what the
// loader writes and what the console shows, step by step.

inline const QByteArray kPrimaryHeader = hex("34 12 00 00  05 00 00 00");
inline const QByteArray kPrimaryCode = hex("00 FF 0A 0D 1A");
inline const QByteArray kSecondaryHeader = hex("04 80 00 80  07 00 00 00");
inline const QByteArray kSecondaryCode = hex("35 6F 45 74 00 80 7F");

void fillBringUp(Rig& bench);

/// Returns the steps: step 0 follows the open; 1 to 5 are the second "5", "R", "X", "o" and "t".
[[nodiscard]] std::vector<Step> bringUpSteps();

/// Text n ends where the answer of step n is awaited; the last is the end of a good run.
[[nodiscard]] QStringList bringUpTexts();

inline const QString kAborted = QStringLiteral("\n--- Cancel download, closing port ---\n");
inline const QString kMismatch = QStringLiteral("invalid character received! Cancelling.\n");

/// The ways in which an answer can go wrong.
enum class Trouble { Wrong, Silent, Cancel, CloseWindow, HangUp };
inline constexpr std::array kTroubles{Trouble::Wrong, Trouble::Silent, Trouble::Cancel, Trouble::CloseWindow,
                                      Trouble::HangUp};

/// Makes the step go wrong. A wrong answer has "?" at `position`.
void disturb(ScriptedRig& b, Step& step, Trouble trouble, qsizetype position = 0);

/// Returns what the console then shows in place of the answer, what the boxes say and the outcome.
[[nodiscard]] QString echoOf(Trouble trouble);
[[nodiscard]] QStringList boxesOf(Trouble trouble);
[[nodiscard]] zrk::Outcome outcomeOf(Trouble trouble);

} // namespace zrktest
