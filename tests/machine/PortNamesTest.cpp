#include "machine/PortNames.h"

#include "platform/RuntimeFailure.h"

#include <QHash>
#include <QSet>

#include <gtest/gtest.h>

namespace zrk {
namespace {

#ifndef _WIN32
TEST(PortNames, OverrideThenEnvironmentThenFirstDeviceThatExists) {
    const QSet<QString> devices{"/dev/ttyUSB0", "/dev/ttyS1",   "/dev/ttyACM1", "/dev/ttyS2",
                                "/dev/ttyS7",   "/dev/ttyUSB8", "/dev/ttyUSB3"};
    const QHash<QString, QString> environment{
        {"ZRK_COM1", "/dev/other"}, {"ZRK_COM4", "/dev/named"}, {"ZRK_COM3", ""}};
    const PortNames names({{1, "/tmp/board"}},
                          {[&](const QString& variable) { return environment.value(variable); },
                           [&](const QString& device) { return devices.contains(device); }});
    const std::pair<int, const char*> cases[] = {
        {1, "/tmp/board"}, {2, "/dev/ttyACM1"}, {3, "/dev/ttyS2"}, {4, "/dev/named"},
        {5, ""},           {8, "/dev/ttyS7"},   {0, ""},           {9, ""}};
    for (const auto& [number, device] : cases)
        EXPECT_EQ(names.device(number).toStdString(), device) << number;
    for (int number = 0; number <= 9; ++number)
        EXPECT_EQ(names.isFallback(number), number == 3 || number == 8) << number;

    EXPECT_EQ(names.deviceNamed("com2:"), "/dev/ttyACM1");
    EXPECT_EQ(names.deviceNamed("COM5"), "");
    EXPECT_EQ(names.deviceNamed("COM9"), "COM9");
    EXPECT_EQ(names.deviceNamed("/dev/pts/3"), "/dev/pts/3");
}

TEST(PortNames, OverrideIsParsedOrRefusedWithTheReason) {
    const std::pair<const char*, const char*> cases[] = {
        {"1=/dev/ttyUSB0", "1 /dev/ttyUSB0"},
        {"8=/tmp/a=b", "8 /tmp/a=b"},
        {"/dev/ttyUSB0", "--com /dev/ttyUSB0: a port number, \"=\" and a device are expected, "
                         "as in --com 1=/dev/ttyUSB0."},
        {"9=/dev/x", "--com 9=/dev/x: the port number must be 1 to 8, as in --com 1=/dev/ttyUSB0."},
        {"=/dev/x", "--com =/dev/x: the port number must be 1 to 8, as in --com 1=/dev/ttyUSB0."},
        {"2=", "--com 2=: the device is missing, as in --com 1=/dev/ttyUSB0."},
    };
    for (const auto& [text, expected] : cases) {
        QString outcome;
        try {
            const auto [number, device] = PortNames::parseOverride(text);
            outcome = QString::number(number) + ' ' + device;
        } catch (const RuntimeFailure& failure) {
            EXPECT_EQ(failure.kind(), FailureKind::InvalidArgument);
            outcome = failure.description();
        }
        EXPECT_EQ(outcome.toStdString(), expected);
    }
}
#else
TEST(PortNames, EveryNumberOfAPortMayHaveItsColon) {
    const PortNames names({{1, "COM14:"}, {2, "tcp:COM5:"}},
                          {[](const QString& variable) {
                               return variable == "ZRK_COM3" ? QStringLiteral("com123:") : QString();
                           },
                           [](const QString&) { return true; }});
    const std::pair<int, const char*> numbers[] = {
        {1, "COM14"}, {2, "tcp:COM5:"}, {3, "com123"}, {4, R"(\\.\COM4)"}, {9, ""}};
    for (const auto& [number, device] : numbers)
        EXPECT_EQ(names.device(number).toStdString(), device) << number;
    const std::pair<const char*, const char*> devices[] = {
        {"COM4", R"(\\.\COM4)"}, {"com4:", R"(\\.\COM4)"}, {"COM1:", "COM14"},
        {"COM9", "COM9"},        {"COM9:", "COM9"},        {"COM14:", "COM14"},
        {"Com255:", "Com255"},   {"COM:", "COM:"},         {"C:", "C:"}};
    for (const auto& [name, device] : devices)
        EXPECT_EQ(names.deviceNamed(name).toStdString(), device) << name;
}
#endif

} // namespace
} // namespace zrk
