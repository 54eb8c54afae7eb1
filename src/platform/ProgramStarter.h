#pragma once

#include <QString>

namespace zrk {

/// A starter of other programs.
class ProgramStarter {
  public:
    virtual ~ProgramStarter() = default;

    /// Starts the program at this path, which may hold blanks, without a shell, and does not wait for it.
    /// Returns false if it cannot be started.
    [[nodiscard]] virtual bool start(const QString& path) = 0;
};

} // namespace zrk
