#pragma once

#include "monkey/Acts.h"

namespace zrkmonkey {

/// A random player with the room: one act after the other, and others within an act, such as a bring-up.
/// Checks after each what must always hold.
class Monkey {
  public:
    /// Takes `prints`: whether each act is printed before it happens, which a crash or a hang cannot undo.
    Monkey(std::uint64_t seed, bool prints);

    void play(int acts);

    /// Brings up a good board after all acts, and waits for its next wait.
    void bringUp();

    [[nodiscard]] const QStringList& faults() const { return m_faults; }
    /// Returns the seed and the last acts.
    [[nodiscard]] QString story() const;

    /// Counts the window's objects by class, after closing everything that had been opened in it.
    [[nodiscard]] std::map<QString, int> objects();

  private:
    [[nodiscard]] int answer(QMessageBox& box);
    void readAbout(QDialog& about);
    void playOne(int depth);
    void within();
    void arm();
    void settle();
    void rescue();
    void note(const QString& what);
    void require(bool holds, const char* what);
    void checkCancel();
    void checkIdle();

    std::uint64_t m_seed;
    bool m_prints;
    QStringList m_told;
    QStringList m_faults;
    int m_depth = 0;
    int m_modal = 0; ///< boxes and file dialogs that are open, and About
    int m_boxes = 0; ///< of them, boxes
    qsizetype m_boxesShown = 0;
    int m_actsWithin = 0;
    int m_patience = 0;                             ///< so many acts within one, until the user only cancels
    std::optional<zrksim::TimePoint> m_cancelledAt; ///< by a click that nothing takes back
    bool m_isCalm = false; ///< little happens within an act, so that others than its first steps are seen
    bool m_isOver = false; ///< the user only cancels what is still under way
    Room m_room;
    Acts m_acts{m_room, m_seed};
};

} // namespace zrkmonkey
