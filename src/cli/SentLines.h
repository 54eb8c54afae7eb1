#pragma once

#include <QPropertyChangeHandler>

#include <cstddef>
#include <functional>
#include <vector>

namespace zrk {

class Output;
struct Loader;

/// Reports on each image that has been sent: bytes and CRC-32, which the board's own commands may be able to
/// print, too, and whether the file has changed since it was announced; and the version with which pg_sibl
/// answers.
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
