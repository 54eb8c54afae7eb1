#pragma once

#include "board/BadWire.h"
#include "board/Board.h"
#include "simulation/LinePort.h"

namespace zrksim {

/// A paced line with the simulated board at its end, and a bad wire in between if there are faults for one.
class BoardPort final : public LinePort {
  public:
    explicit BoardPort(VirtualEventLoop& loop, const zrkboard::BoardOptions& options = {},
                       const zrkboard::WireFaults& faults = {});

    /// Cycles the board's power, as the user would.
    void powerOn();

    zrkboard::Board board;
    zrkboard::BadWire wire;
    QByteArray heard; ///< all that has come to the loader's side

  private:
    void opened() override;
    void closed() override;
    void delivered(char byte, TimePoint when) override;
    void carry();

    TimePoint m_boardTime{};
    std::optional<VirtualEventLoop::Event> m_next;
};

} // namespace zrksim
