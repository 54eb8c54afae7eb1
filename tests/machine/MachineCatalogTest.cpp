#include "machine/MachineCatalog.h"

#include "machine/PortDescription.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

namespace zrk {
namespace {

/// A system whose files about its ports are in a folder.
struct FakeSystem {
    void write(const QString& name, const QByteArray& text = {}) const {
        QFile file(path(name));
        EXPECT_TRUE(QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    void link(const QString& name, const QString& target) const {
        EXPECT_TRUE(QDir().mkpath(QFileInfo(path(name)).path()) && QFile::link(path(target), path(name)));
    }
    void adapter(const QString& node, const QString& serial) const {
        const QString usb = "sys/devices/" + serial;
        write(usb + "/idVendor", "0403\n");
        write(usb + "/idProduct", "6001\n");
        write(usb + "/serial", serial.toLatin1());
        write(usb + "/1-0:1.0/" + node + "/uevent");
        link("sys/tty/" + node + "/device", usb + "/1-0:1.0/" + node);
        write("dev/" + node);
        link("by-id/usb-" + serial, "dev/" + node);
    }
    [[nodiscard]] QString path(const QString& name) const { return folder.filePath(name); }

    [[nodiscard]] PortPlaces places() const {
        PortPlaces places{path("sys/tty"), path("dev"), path("by-id"), path("proc"), path("lock")};
        places.isPermitted = [this](const QString& device) { return device != path("dev/ttyUSB0"); };
        return places;
    }
    /// Returns another user of the second adapter.
    [[nodiscard]] std::string other() const {
        return otherUserOf(path("by-id/usb-B6"), places()).toStdString();
    }

    /// Returns what a user learns about all ports: a line each, "~" for the folder.
    [[nodiscard]] std::string told(const PortNames::Overrides& named) const {
        const PortNames names(named, {[](const QString&) { return QString(); },
                                      [](const QString& device) { return device.startsWith("/dev/ttyS"); }});
        QString all;
        for (PortEntry port : MachineCatalog(names, {}, places()).ports()) {
            port.group = QStringLiteral("dialout"); // the files belong to the user who runs the test
            all += describe(port).join(QStringLiteral(" | ")) + '\n';
        }
        return all.replace(folder.path(), QStringLiteral("~")).toStdString();
    }

    QTemporaryDir folder;
};

TEST(MachineCatalog, ListsPortsWithHardwareAndPortsWithANameAndTheirUsers) {
    const FakeSystem system;
    system.adapter("ttyUSB0", "A5");
    system.adapter("ttyUSB1", "B6");
    for (const auto& [node, type] : {std::pair{"ttyS0", "4\n"}, {"ttyS1", "0\n"}}) {
        system.write(QStringLiteral("sys/tty/%1/type").arg(node), type);
        system.link(QStringLiteral("sys/tty/%1/device").arg(node), "sys/devices");
        system.write(QStringLiteral("dev/%1").arg(node));
    }
    system.write("proc/4711/comm", "minicom\n");
    system.link("proc/4711/fd/3", "dev/ttyUSB1");
    system.link("board", "dev/ttyUSB1");
    PortNames::Overrides named{{4, "rfc2217:rack:2217"}, {5, system.path("board")}};
    named[2] = system.path("by-id/usb-B6");
    named[3] = system.path("by-id/usb-gone");
    const std::string b6 = "~/by-id/usb-B6 | COM2, COM5, ~/dev/ttyUSB1 | serial number B6, USB 0403:6001 | ";
    EXPECT_EQ(system.told(named),
              b6 + "in use by minicom (4711)\n"
                   "~/by-id/usb-gone | COM3 | not there: plug the adapter in\n"
                   "~/dev/ttyS0 | Built-in serial port | free\n"
                   "~/by-id/usb-A5 | ~/dev/ttyUSB0 | serial number A5, USB 0403:6001 | free | "
                   "no permission: add yourself to the group dialout and log in again\n"
                   "rfc2217:rack:2217 | COM4 | on the network; only opening it shows whether it is there\n");
    EXPECT_EQ(system.other(), "minicom (4711)");
    const QString own = QStringLiteral("proc/%1/fd/4").arg(::getpid());
    system.link(own, "dev/ttyUSB1");
    EXPECT_EQ(system.told(named).find(b6 + "in use by minicom (4711)\n"), 0U);
    EXPECT_EQ(system.other(), "minicom (4711)");
    // The lock of a dead process is ignored, until a process with that number lives.
    EXPECT_TRUE(QFile::remove(system.path("proc/4711/fd/3")));
    system.write("lock/LCK..ttyUSB1", "      4713\n");
    EXPECT_EQ(system.told(named).find(b6 + "in use by this program\n"), 0U);
    EXPECT_EQ(system.other(), "");
    system.write("proc/4713/comm", "picocom\n");
    EXPECT_EQ(system.other(), "picocom (4713)"); // although this program has it open
    EXPECT_TRUE(QFile::remove(system.path(own)));
    EXPECT_EQ(system.told(named).find(b6 + "in use by picocom (4713)\n"), 0U);
    // Any account may put a pipe there, or a link to one.
    const QString lock = system.path("lock/LCK..ttyUSB1");
    ASSERT_TRUE(QFile::remove(lock) && ::mkfifo(qPrintable(lock), 0600) == 0);
    EXPECT_EQ(system.told(named).find(b6 + "free\n"), 0U);
    ASSERT_TRUE(QFile::rename(lock, system.path("pipe")) && QFile::link(system.path("pipe"), lock));
    EXPECT_EQ(system.told(named).find(b6 + "free\n"), 0U);
}

} // namespace
} // namespace zrk
