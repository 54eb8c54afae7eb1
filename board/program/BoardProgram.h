#pragma once

#include "board/AdapterBuffer.h"
#include "board/BadWire.h"
#include "board/Board.h"
#include "board/PacedQueue.h"
#include "board/Replay.h"
#include "board/program/DeviceLink.h"
#include "board/program/PowerUser.h"
#include "board/program/ProgramOptions.h"
#include "board/program/PseudoTerminal.h"
#include "board/program/SignalInput.h"
#include "board/program/UseWatch.h"

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace zrkboard {

// The board on a device of this machine. It moves bytes between a pseudo-terminal and the model at the line's
// pace, plays the user at the power switch, and ends on a signal or after the wanted number of runs.
class BoardProgram {
  public:
    // `out` gets the device's path, `log` the board's log if that is wanted. Throws std::exception if it
    // cannot get device, link or NAND file.
    BoardProgram(ProgramOptions options, std::ostream& out, std::ostream& log);

    // Returns at the end of the program, with the dumps written. Throws std::exception if one cannot be
    // written, or if a replayed trace was not what the loader sent.
    void run();

  private:
    // The adapter: what exists as long as it is plugged in.
    struct Adapter {
        PseudoTerminal terminal;
        UseWatch use{terminal.devicePath()};
        std::unique_ptr<DeviceLink> link;
        bool moreToRead = false; // after what the driver's buffer had room for
    };

    void plugIn();
    void unplug(TimePoint now);
    void waitForSomething();
    [[nodiscard]] std::optional<TimePoint> nextWake(TimePoint now) const;
    void service(TimePoint now);
    void obeySignals(TimePoint now);
    void noticeLoader(TimePoint now);
    void endUse(TimePoint now);
    void moveToBoard(TimePoint now);
    void moveToLoader(TimePoint now);
    void operatePower(TimePoint now);
    void endRun(const std::string& why, TimePoint now);
    void log(TimePoint when, const std::string& what) const;

    ProgramOptions m_options;
    std::ostream& m_out;
    std::ostream& m_log;
    TimePoint m_started = Clock::now();
    SignalInput m_signals;
    Board m_board;
    std::unique_ptr<Replay> m_replay; // null: the board answers
    std::unique_ptr<BadWire> m_wire;  // null: nothing goes wrong on the way
    FarEnd& m_end;                    // answers at the end of the wire
    PowerUser m_powerUser;
    PacedQueue m_toBoard;
    PacedQueue m_toLoader;
    AdapterBuffer m_adapterBuffer;
    std::vector<std::uint8_t> m_delivered; // through the line, not yet taken by the loader's side
    std::unique_ptr<Adapter> m_adapter;    // null between a hang-up and the new device
    std::optional<TimePoint> m_replugAt;
    bool m_useEnds = false; // the loader has closed the port, and some of what it sent is still on its way
    bool m_done = false;
};

} // namespace zrkboard
