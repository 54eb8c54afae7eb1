#pragma once

#include "platform/ProgramStarter.h"

namespace zrk {

/// A starter of programs of this machine, which continue after this one ends.
class DetachedStarter final : public ProgramStarter {
  public:
    [[nodiscard]] bool start(const QString& path) override;
};

} // namespace zrk
