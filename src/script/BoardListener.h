#pragma once

#include "serial/Link.h"

#include <QByteArray>
#include <QList>

#include <chrono>
#include <functional>
#include <optional>

namespace zrk {

/// A listener to a program on the board, outside any protocol. Its calls are operations, whose outcome
/// Operation keeps. What the board sends is kept for the next reader of the port.
class BoardListener {
  public:
    using Limit = std::optional<std::chrono::milliseconds>;

    explicit BoardListener(Link& link) : m_link(link) {}

    /// Opens the port if it is closed and passes on what the board sends, up to the end of the first `text`;
    /// what comes after it stays unread. Yields. After `limit` the outcome is LimitReached and the failure
    /// shows what came last; it is WrongAnswer if one of the `unwanted` comes before.
    void expect(const QByteArray& text, Limit limit, const std::function<void(const QByteArray&)>& heard,
                const QList<QByteArray>& unwanted = {});

    /// Opens the port if it is closed. With a limit it retries, yielding, until the port can be opened; after
    /// that the outcome is PortNotOpened.
    void openPort(Limit limit);

    /// Waits, yielding, for the first bytes of a program that has just been started, which stay unread. The
    /// outcome is LimitReached after a silence of `limit`, WrongAnswer if the board announces its BootID.
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

/// Returns the end of a text of the board for a message: at most 200 characters, in quotes, with control
/// characters as "\r", "\n" or "\x1B"; "nothing" for an empty one.
[[nodiscard]] QString quotedEnd(const QByteArray& text);

} // namespace zrk
