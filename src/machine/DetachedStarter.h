#pragma once

#include "platform/ProgramStarter.h"

namespace zrk {

/// Starts programs of this machine, which go on when this one ends.
class DetachedStarter final : public ProgramStarter {
  public:
    [[nodiscard]] bool start(const QString& path) override;
};

} // namespace zrk
