#pragma once

#include "serial/Link.h"

#include <chrono>
#include <functional>
#include <optional>

namespace zrk {

/// Watches an idle port for the power-on of the next board, where one board after another is plugged in.
class BoardWatch {
  public:
    /// A board whose BootIDs stop for so long has been taken away.
    static constexpr std::chrono::milliseconds kAway{1500};

    explicit BoardWatch(Link& link) : m_link(link) {}

    /// Waits, yielding and without a limit, until a board announces itself with BootIDs that stand alone;
    /// what a program prints does not count. Opens the port, and opens it again as often as it is lost. With
    /// an `old` board at the port its BootIDs do not count: they or the port have to go away first. After ten
    /// seconds of them it calls `stillThere`, once. Each new reason why the port does not open goes to `notOpened`.
    /// It is an operation, with the outcome at the gate.
    void awaitBoard(bool old, const std::function<void()>& stillThere,
                    const std::function<void(const QString& why)>& notOpened = {});

  private:
    [[nodiscard]] Operation::End watch(bool old, const std::function<void()>& stillThere,
                                       const std::function<void(const QString& why)>& notOpened);
    /// Returns why the port cannot be opened, or "".
    [[nodiscard]] QString openIfThere();
    /// What has come; nothing if the port was lost, which is closed now.
    [[nodiscard]] std::optional<QByteArray> receiveOrClose();

    Link& m_link;
};

} // namespace zrk
