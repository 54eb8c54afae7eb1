#pragma once

#include "controls/Desk.h"
#include "serial/ComPort.h"
#include "serial/ConsoleKeys.h"
#include "serial/Operation.h"
#include "serial/PortControl.h"
#include "serial/StatusConsole.h"
#include "serial/TerminalMode.h"
#include "serial/Transport.h"

namespace zrk {

/// A desk with its line to the board: the port, the console, and the gate for operations. Protocols use this.
struct Link : Desk {
    Link(EventLoop& eventLoop, SerialPorts& ports, MessageBoxes& messageBoxes, FileDialog& dialog)
        : Desk(eventLoop, messageBoxes, dialog), port(ports, controls),
          console(controls.txtStatus, eventLoop), transport(*this, port, console),
          terminal(*this, port, console), keys(*this, port), portControl(*this, port, console, terminal),
          operation(*this, port, console, transport) {}

    ComPort port; ///< the one owner of the open port
    StatusConsole console;
    Transport transport;
    TerminalMode terminal;
    ConsoleKeys keys;
    PortControl portControl;
    Operation operation; ///< the gate to the port
};

} // namespace zrk
