#pragma once

#include "monkey/Acts.h"

namespace zrkmonkey {

/// Plays with the room: one act after the other, and while one lasts, as a bring-up does, others within it.
/// Checks after each what must hold whatever was done.
class Monkey {
  public:
    /// `tells` whether each act is printed before it happens, which a crash or a hang cannot take back.
    Monkey(std::uint64_t seed, bool tells);

    void play(int acts);

    /// After all that, a good board is brought up as ever, and waits for what to do next.
    void bringUp();

    [[nodiscard]] const QStringList& faults() const { return m_faults; }
    /// The seed and what was done last.
    [[nodiscard]] QString story() const;

    /// The window's objects by their classes, with everything closed that had been opened in it.
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
    bool m_tells;
    QStringList m_told;
    QStringList m_faults;
    int m_depth = 0;
    int m_modal = 0; ///< boxes and file dialogs that are open, and About
    int m_boxes = 0; ///< of them, boxes
    qsizetype m_boxesShown = 0;
    int m_actsWithin = 0;
    int m_patience = 0;                             ///< so many acts within one, until the user only gives up
    std::optional<zrksim::TimePoint> m_cancelledAt; ///< by a click that nothing takes back
    bool m_isCalm = false; ///< little happens within an act, so that others than its first steps are seen
    bool m_isOver = false; ///< the user only gives up what is still under way
    Room m_room;
    Acts m_acts{m_room, m_seed};
};

} // namespace zrkmonkey
