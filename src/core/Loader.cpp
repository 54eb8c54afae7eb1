#include "core/Loader.h"

#include "platform/EventLoop.h"

namespace zrk {

Loader::Loader(const LoaderSurroundings& s, const QString& imageFolder)
    : paths(imageFolder), port(s.port, controls), console(controls.txtStatus, s.loop),
      transport(state, controls, port, console, s.boxes, s.loop),
      terminal(state, controls, port, console, s.boxes, s.loop), keys(state, controls, port, s.boxes, s.loop),
      portControl(state, controls, port, console, terminal, s.loop), imageSlots(controls, paths),
      addresses(controls), validation(state, controls, s.boxes),
      iniLoader(state, controls, s.boxes, paths, imageSlots, addresses),
      fileChoice(state, imageSlots, paths, s.fileDialog), operation(state, port, console, transport, s.boxes),
      handshake(state, console, transport, port, keys, s.waitDialog),
      transfer(state, controls, imageSlots, console, transport, s.boxes),
      commands(state, controls, console, transport, port, terminal, validation, transfer, operation),
      bringUp(state, controls, console, transport, port, terminal, validation, handshake, transfer, commands,
              operation),
      flashFrames(transport, console), flash(state, controls, console, transport, port, terminal, handshake,
                                             transfer, flashFrames, operation, s.boxes),
      script(state, controls, port, paths, s.fileDialog, operation, s.loop),
      startUp(state, controls, transport, iniLoader, s.boxes),
      activity(state, controls, port, transport, imageSlots, s.loop) {}

} // namespace zrk
