#pragma once

#include "monkey/Room.h"

#include <random>

class QAbstractButton;

namespace zrkmonkey {

/// The random acts of a user, an adapter and a board.
class Acts {
  public:
    Acts(Room& room, std::uint64_t seed) : m_room(room), m_random(seed) {}

    /// Returns a number from 0 to `end` - 1.
    [[nodiscard]] unsigned pick(std::size_t end) { return static_cast<unsigned>(m_random() % end); }
    template <typename List>
    [[nodiscard]] auto& oneOf(const List& list) {
        return list[pick(std::size(list))];
    }

    /// Describes the user's act with what is on the screen, then returns it.
    [[nodiscard]] std::pair<QString, std::function<void()>> ofUser();
    /// Returns the user's act with a dialog.
    [[nodiscard]] std::pair<QString, std::function<void()>> ofDialog(QWidget& dialog);
    /// Returns an event without the user: of board, adapter and files.
    [[nodiscard]] std::pair<QString, std::function<void()>> ofWorld();
    /// Chooses a file for a dialog; "" cancels it. One to be written is not an image: logs and traces are
    /// written in real time, beside which virtual time stands still.
    [[nodiscard]] QString file(bool isToBeWritten);

    /// Whether the user may send bytes by hand in the wait dialog, which mutes the protocols for good.
    bool mayMute = false;

  private:
    using Act = std::pair<QString, std::function<void()>>;
    [[nodiscard]] Act inPopup(QWidget& popup);
    [[nodiscard]] Act press(QWidget& window);
    [[nodiscard]] QAbstractButton* starterAmong(const QList<QAbstractButton*>& buttons,
                                                QAbstractButton* otherwise);
    [[nodiscard]] Act key(QWidget& window);
    [[nodiscard]] Act entry();
    [[nodiscard]] Act address();
    [[nodiscard]] Act ofWindow(QWidget& window);
    [[nodiscard]] Act ofMouse();
    [[nodiscard]] Act drop();
    [[nodiscard]] Act inConsole(QWidget& viewport);

    Room& m_room;
    std::mt19937_64 m_random;
};

} // namespace zrkmonkey
