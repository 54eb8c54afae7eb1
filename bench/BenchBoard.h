#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace zrkbench {

/// A file beside the running program.
[[nodiscard]] QString siblingProgram(const QString& name);

/// The simulated board as a process of its own, so that its processor time is not ours.
class BenchBoard {
  public:
    explicit BenchBoard(const QStringList& options);
    ~BenchBoard();
    [[nodiscard]] const QString& device() const { return m_device; }

  private:
    QProcess m_process;
    QString m_device;
};

} // namespace zrkbench
