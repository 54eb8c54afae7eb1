#pragma once

#include <QPropertyChangeHandler>

#include <cstddef>
#include <functional>
#include <vector>

namespace zrk {

class Output;
struct Loader;

/// Tells of each image that has been sent what it was: bytes and CRC-32, which the board's own commands may
/// be able to print as well, and whether the file is still the one that was announced; and of the version
/// with which pg_sibl answers.
class SentLines {
  public:
    SentLines(Loader& loader, Output& output);

  private:
    void tell(std::size_t slot);
    void tellVersion();

    Loader& m_loader;
    Output& m_output;
    std::vector<QPropertyChangeHandler<std::function<void()>>> m_handlers;
};

} // namespace zrk
