#pragma once

#include "board/Partner.h"

namespace zrkboard {

// A chip after a fatal error: it takes everything and answers nothing.
class Silent : public Partner {
  public:
    void receive(std::uint8_t /*byte*/) override {}
    [[nodiscard]] State state() const override { return State::Silent; }
};

} // namespace zrkboard
