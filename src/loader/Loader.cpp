#include "loader/Loader.h"

namespace zrk {

Loader::Loader(const LoaderSurroundings& s, const QString& imageFolder)
    : Link(s.loop, s.ports, s.boxes, s.fileDialog), imageSlots(*this, Paths(imageFolder)), addresses(*this),
      validation(*this), iniLoader(*this, imageSlots, addresses), fileChoice(*this, imageSlots),
      handshake(*this, s.waitDialog), transfer(*this, imageSlots), commands(*this, validation, transfer),
      bringUp(*this, validation, handshake, transfer, commands), flash(*this, handshake, transfer),
      script(*this), listener(*this), watch(*this), memoryCheck(*this), startUp(*this, iniLoader),
      activity(*this, imageSlots) {}

} // namespace zrk
