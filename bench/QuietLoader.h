#pragma once

#include "loader/Loader.h"
#include "machine/MachinePorts.h"
#include "machine/QtEventLoop.h"

#include <QTemporaryDir>

namespace zrkbench {

/// A loader whose COM1 is a device, with a person who says yes to everything. Needs a QCoreApplication.
class QuietLoader {
  public:
    /// `lineRate` in bytes a second: 0 where the device is no line, without it that of 115200 baud.
    explicit QuietLoader(const QString& device, std::optional<std::uint32_t> lineRate = {});
    ~QuietLoader();
    QuietLoader(const QuietLoader&) = delete;
    QuietLoader& operator=(const QuietLoader&) = delete;

    [[nodiscard]] zrk::Loader& loader() { return *m_loader; }

    /// Waits for the next thing to happen on the loader's thread.
    void wait() { m_loop.wait(); }

    /// Writes a file into a folder that lives as long as this; returns its path.
    [[nodiscard]] QString file(const QString& name, const QByteArray& content) const;

    [[nodiscard]] QString folder() const { return m_folder.path(); }

    /// All that the person has been told or asked.
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
