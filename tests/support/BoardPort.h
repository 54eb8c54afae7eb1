#pragma once

#include "board/Board.h"
#include "support/LinePort.h"

namespace zrktest {

/// A paced line with the simulated board at its other end.
class BoardPort final : public LinePort {
  public:
    explicit BoardPort(VirtualEventLoop& loop, const zrkboard::BoardOptions& options = {});

    /// The user cycles the board's power.
    void powerOn();

    zrkboard::Board board;

  private:
    void delivered(char byte, TimePoint when) override;
    void carry();

    TimePoint m_boardTime{};
    std::optional<VirtualEventLoop::Event> m_next;
};

} // namespace zrktest
