#pragma once

#include "loader/Loader.h"
#include "machine/MachinePorts.h"
#include "machine/QtEventLoop.h"

#include <QTemporaryDir>

namespace zrkbench {

/// A loader whose COM1 is a device, with a user who always answers yes. Needs a QCoreApplication.
class QuietLoader {
  public:
    /// Takes `lineRate` in bytes a second: 0 if the device has no line, without it that of 115200 baud.
    explicit QuietLoader(const QString& device, std::optional<std::uint32_t> lineRate = {});
    ~QuietLoader();
    QuietLoader(const QuietLoader&) = delete;
    QuietLoader& operator=(const QuietLoader&) = delete;

    [[nodiscard]] zrk::Loader& loader() { return *m_loader; }

    /// Blocks until the next event on the loader's thread.
    void wait() { m_loop.wait(); }

    /// Writes a file into a folder that lives as long as this object; returns its path.
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const;

    [[nodiscard]] QString folder() const { return m_folder.path(); }

    /// Returns all messages and questions for the user.
    [[nodiscard]] const QString& said() const;

  private:
    class Person;

    QTemporaryDir m_folder;
    zrk::QtEventLoop m_loop;
    std::unique_ptr<Person> m_person;
    zrk::MachinePorts m_ports;
    std::unique_ptr<zrk::Loader> m_loader;
};

} // namespace zrkbench
