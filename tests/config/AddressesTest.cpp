#include "support/Rig.h"

namespace {

using namespace zrktest;

class Addresses : public ScriptedTest {
  protected:
    struct Image {
        int slot;
        const char* address;
        const char* size;
    };

    void select(const std::vector<Image>& images) {
        for (auto& box : loader.controls.chkExeURK)
            box.Value = 0;
        for (const Image& image : images) {
            bench.fill(image.slot, "x", image.address);
            loader.controls.lblCodeSize[static_cast<std::size_t>(image.slot)].Caption = image.size;
        }
    }

    /// Returns index, start and size of each, the markers by name.
    [[nodiscard]] QString rows() const {
        QStringList all;
        for (const auto& row : loader.controls.lvwAdrs.rows())
            all += row.index + ' ' + row.start + ' ' + row.size;
        return all.join('|')
            .replace("5 0x00000000 0x4", "LOW")
            .replace("6 0x02000000 ", "MIDDLE")
            .replace("7 0x04000000 ", "END");
    }
};

TEST_F(Addresses, EntryRule) {
    // With a part of the remark on texts that most likely mean something else.
    const std::initializer_list<std::tuple<int, const char*, const char*, const char*>> table{
        {1, "0x80000000", "0x80000000", ""},
        {1, "0x8000", "0x00008000", ""},
        {5, "4096", "0x00001000", "4096 is taken for a decimal number, which is 0x00001000."},
        {5, "0x1000", "0x00001000", ""},
        {1, "&h80000000", "0x80000000", ""},
        {2, "0h100", "0x00000100", ""},
        {3, "0xabcdef01", "0xABCDEF01", ""},
        {0, "0x12345", "0x2345", "does not fit into the IRAM"},
        {0, "0x80000004", "0x0004", "0x0004 is used instead."},
        {6, "1", "0x0001", ""},
        {1, "80008000", "0x04C4D340", "Write 0x in front of hexadecimal digits."},
        {1, "0X80000000", "0x0", "0x0 is used instead. Write 0x and up to 8 hexadecimal digits."},
        {4, "xyz", "0x0", "the address cannot be read."},
        {0, "", "0x0", "the address cannot be read."},
        {1, "0x180000000", "0x0", "cannot be read"},
        {1, " 0x80000004", "0x0", "cannot be read"},
        {1, "0x80000004 ", "0x80000004", ""}};
    for (const auto& [slot, typed, entered, remark] : table) {
        auto& text = loader.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text;
        text = typed;
        EXPECT_EQ(loader.addresses.txtStartAddress_KeyPress(slot, 'x'), 'x');
        EXPECT_EQ(text.value(), typed);
        EXPECT_EQ(loader.addresses.txtStartAddress_KeyPress(slot, 13), 0);
        EXPECT_EQ(text.value(), entered) << slot << " " << typed;
        for (int look = 0; look < 2; ++look) { // the second time the focus only passes through
            const QString mark = loader.controls.AddressRemark[static_cast<std::size_t>(slot)];
            EXPECT_TRUE(*remark == 0 ? mark.isEmpty() : mark.contains(remark)) << typed << mark.toStdString();
            EXPECT_EQ(loader.state.Remark.text.contains(mark), true) << "its last one stays";
            loader.addresses.txtStartAddress_Validate(slot);
        }
    }
}

TEST_F(Addresses, ValidationsRowsAndMessages) {
    const auto overlap = [](const char* first, const char* second) {
        return QStringLiteral("[Address overlap or too large] ! Address range for the %1\n"
                              "overlaps the address range for %2")
            .arg(first, second);
    };
    const auto invalid = [&](const char* name) {
        return QStringLiteral("[Invalid address] ! Check the Start address for the %1\n"
                              "It must be between 0x80000004 and 0x83FFFFF0")
            .arg(name);
    };
    const char* low = "UBoot marker (0x80000000)";
    const char* middle = "UBoot marker (0x82000000)";
    struct Row {
        std::vector<Image> images;
        QString rows;
        QStringList boxes = {};
    };
    const std::vector<Row> table{
        {{}, "LOW|MIDDLE|END"},
        // The smallest and the largest address that fit, and both neighbours of a marker's edge.
        {{{1, "0x80000004", "0x1FFFFFC"}}, "LOW|1 0x00000004 0x1FFFFFC|MIDDLE|END"},
        {{{2, "0x82000000", "0x2000000"}}, "LOW|MIDDLE|2 0x02000000 0x2000000|END"},
        {{{4, "0x83FFFFF0", "0x10"}}, "LOW|MIDDLE|4 0x03FFFFF0 0x10|END"},
        {{{4, "0x83FFF000", "0x1001"}},
         "LOW|MIDDLE|4 0x03FFF000 0x1001|END",
         {overlap("Kernel image", "maximum address")}},
        {{{1, "0x7FFFFFF0", "0x10"}}, "LOW|MIDDLE|END|1 0x0FFFFFF0 0x10", {invalid("Secondary Executable")}},
        // Bounds errors keep the overlap test from running.
        {{{1, "0x84000000", "0x10"}, {3, "0x0", "0x10"}, {4, "0x83FFF000", "0x2000"}},
         "3 0x00 0x10|LOW|MIDDLE|4 0x03FFF000 0x2000|END|1 0x04000000 0x10",
         {invalid("Secondary Executable"), invalid("Root FS image")}},
        {{{1, "0x80000002", "0x10"}},
         "LOW|1 0x00000002 0x10|MIDDLE|END",
         {overlap(low, "Secondary Executable")}},
        // A range that reaches past several others is reported once, against its neighbour.
        {{{2, "0x80001000", "0x3000000"}, {3, "0x80002000", "0x100"}, {4, "0x80002100", "0x100"}},
         "LOW|2 0x00001000 0x3000000|3 0x00002000 0x100|4 0x00002100 0x100|MIDDLE|END",
         {overlap("UBoot image", "Root FS image")}},
        {{{2, "0x81FFF000", "0x1001"}, {4, "0x83000000", "0x1000001"}},
         "LOW|2 0x01FFF000 0x1001|MIDDLE|4 0x03000000 0x1000001|END",
         {overlap("UBoot image", middle), overlap("Kernel image", "maximum address")}},
        // IRAM and flash take no part.
        {{{0, "0x0000", "0x10"}, {5, "0x00000000", "0x9000000"}, {6, "0x0000", "0x10"}}, "LOW|MIDDLE|END"}};
    for (const Row& row : table) {
        SCOPED_TRACE(row.rows.toStdString());
        select(row.images);
        bench.boxes.shown.clear();
        EXPECT_EQ(loader.validation.ValidateAddresses(), row.boxes.isEmpty());
        EXPECT_EQ(bench.boxes.shown, row.boxes);
        EXPECT_EQ(rows(), row.rows);
        EXPECT_EQ(loader.state.MessageText.isEmpty(), row.boxes.isEmpty());
        for (const auto& listed : loader.controls.lvwAdrs.rows()) {
            const QString name = loader.state.SlotNames.at(static_cast<std::size_t>(listed.index.toInt()));
            const bool isTold = row.boxes.join('\n').contains(name) && row.boxes[0].contains("overlap");
            EXPECT_EQ(listed.conflicts, isTold) << name.toStdString();
        }
    }

    select({{1, "0x80000000", "0x10"}}); // at the marker itself, whichever of the two comes first
    loader.validation.cmdValidateAdrs_Click();
    EXPECT_TRUE(bench.boxes.shown.last().contains("Secondary Executable") &&
                bench.boxes.shown.last().contains(low));
}

TEST_F(Addresses, UnreadableTextOnDemandIsReportedAndDuringAnOperationAborts) {
    select({{1, "xyz", "0x10"}});
    loader.validation.cmdValidateAdrs_Click();
    ASSERT_EQ(bench.boxes.shown.size(), 2); // out of bounds, and then not a number
    EXPECT_TRUE(bench.boxes.shown[1].contains("\"xyz\""));

    select({{1, "", "0x10"}}); // no last character to drop
    bench.failsBeforeItBegins = true;
    for (const bool primary : {true, false}) {
        const QString before = bench.console();
        loader.port.OpenComPort();
        bench.setButtons("0111");
        loader.state.CancelRequested = true; // from an earlier operation
        primary ? loader.bringUp.cmdStartPrimary_Click() : loader.commands.cmdURK_Click();
        EXPECT_TRUE(bench.boxes.shown.last().startsWith(
            "[Error] ! Error communicating with COM1\nor other download problem\nError: "));
        EXPECT_EQ(bench.console().mid(before.size()), "\n--- Cancel download, closing port ---\n");
        EXPECT_EQ(bench.buttons(), primary ? "1111" : "1011");
        EXPECT_EQ(loader.operation.outcome(), zrk::Outcome::Internal);
        bench.expectAtRest();
    }
}

} // namespace
