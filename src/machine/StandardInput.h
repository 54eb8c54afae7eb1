#pragma once

#include <QByteArray>

#include <memory>

namespace zrk {

class EventLoop;

/// Standard input, read as it comes. A terminal passes every key at once while this exists, and is restored
/// afterwards; one per process. Untaken input stops the sender.
class StandardInput {
  public:
    explicit StandardInput(EventLoop& loop);
    ~StandardInput();
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;

    [[nodiscard]] bool isTerminal() const;

    /// Takes the new input; the event loop wakes when there is more.
    [[nodiscard]] QByteArray take();

    /// Returns true once nothing more will come.
    [[nodiscard]] bool hasEnded() const;

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zrk
