#pragma once

#include <QByteArray>

#include <memory>

namespace zrk {

class EventLoop;

/// Standard input, read as it comes. A terminal passes every key at once while this lives, and is set back
/// afterwards; one per process. What has not been taken holds the input back.
class StandardInput {
  public:
    explicit StandardInput(EventLoop& loop);
    ~StandardInput();
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;

    [[nodiscard]] bool isTerminal() const;

    /// What has come since; the event loop wakes when there is more.
    [[nodiscard]] QByteArray take();

    /// True when nothing more will come.
    [[nodiscard]] bool hasEnded() const;

  private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace zrk
