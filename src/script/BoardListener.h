#pragma once

#include "serial/Link.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <functional>
#include <optional>

namespace zrk {

/// Listens to a program on the board, outside any protocol. What it does is an operation, with the outcome at
/// the gate; nothing that the board says is lost to whoever uses the port next.
class BoardListener {
  public:
    using Limit = std::optional<std::chrono::milliseconds>;

    explicit BoardListener(Link& link) : m_link(link) {}

    /// Opens the port if it is closed and hands on what the board sends, up to the end of the first `text`;
    /// what comes behind it stays unread. Yields. After `limit` the outcome is LimitReached and the failure
    /// says what came last; it is WrongAnswer if one of the `unwanted` comes before.
    void expect(const QByteArray& text, Limit limit, const std::function<void(const QByteArray&)>& heard,
                const QList<QByteArray>& unwanted = {});

    /// Opens the port if it is closed. With a limit it tries again, yielding, until the port can be opened;
    /// a port that cannot ends as PortNotOpened.
    void openPort(Limit limit);

    /// Waits for the first bytes of a program that has just been started, which stay unread. Yields. A board
    /// that is silent for `limit` is a LimitReached, one that announces itself instead a WrongAnswer.
    void awaitProgram(std::chrono::milliseconds limit);

  private:
    [[nodiscard]] Operation::End listen(const QByteArray& text, Limit limit,
                                        const std::function<void(const QByteArray&)>& heard,
                                        const QList<QByteArray>& unwanted);
    void requireNone(const QList<QByteArray>& unwanted, const QByteArray& text, const QByteArray& received,
                     qsizetype found);
    [[nodiscard]] Operation::End watchStart(std::chrono::milliseconds limit);

    Link& m_link;
};

/// The end of a text of the board for a message: no more than 200 characters, in quotes, with control
/// characters as "\r", "\n" or "\x1B"; "nothing" for an empty one.
[[nodiscard]] QString quotedEnd(const QByteArray& text);

} // namespace zrk
