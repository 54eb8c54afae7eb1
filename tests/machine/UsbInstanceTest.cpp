#include "machine/UsbInstance.h"

#include <gtest/gtest.h>

namespace {

TEST(UsbInstance, IdsAndSerialNumberOfAPortsAdapter) {
    struct Row {
        QStringList ids;
        const char* usbId = "";
        const char* serialNumber = "";
    };
    const char* const hub = R"(USB\ROOT_HUB30\4&2B7A1C5E&0&0)";
    for (const Row& row : std::initializer_list<Row>{
             {{R"(USB\VID_2341&PID_0043\7563331313335150D180)", hub}, "2341:0043", "7563331313335150D180"},
             {{R"(USB\VID_1A86&PID_7523\5&1F3B&0&2)", R"(USB\VID_05E3&PID_0608\SERIALOFHUB)"},
              "1a86:7523",
              ""},
             {{R"(USB\VID_10C4&PID_EA70&MI_00\6&2A8B&0&0000)", R"(USB\VID_10C4&PID_EA70\0123ABCD)"},
              "10c4:ea70",
              "0123ABCD"},
             {{R"(FTDIBUS\VID_0403+PID_6001+A50285BIA\0000)", R"(USB\VID_0403&PID_6001\A50285BI)"},
              "0403:6001",
              "A50285BI"},
             {{R"(ACPI\PNP0501\1)", R"(USB\VID_1234&PID_5678\9)"}, "", ""},
             {{}, "", ""}}) {
        const zrk::UsbInstance found = zrk::usbInstance(row.ids);
        EXPECT_EQ(found.usbId, row.usbId);
        EXPECT_EQ(found.serialNumber, row.serialNumber) << row.ids.join(' ').toStdString();
    }
}

} // namespace
