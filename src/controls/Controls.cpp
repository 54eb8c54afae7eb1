#include "controls/Controls.h"

#include "platform/RuntimeFailure.h"

namespace zrk {
namespace {

struct SlotDesign {
    const char* caption;
    const char* addressCaption;
    const char* address;
};

constexpr std::array<SlotDesign, kSlotCount> kSlotDesign{{
    {"&Primary Boot (IRAM)", "IRAM Address", "0x0"},
    {"&Secondary Executable (SDRAM)", "SDRAM Address", "0x80000000"},
    {"&UBoot image", "SDRAM Address", "0x80000000"},
    {"&RootFS image", "SDRAM Address", "0x80000000"},
    {"&Kernel image", "SDRAM Address", "0x80000000"},
    {"&Flash image", "Flash Address", "0x00000000"},
    {"pg_sibl", "IRAM Address", "0x0"},
}};

} // namespace

bool operator==(const ListEntry& a, const ListEntry& b) {
    return a.text == b.text && a.itemData == b.itemData;
}

int ComboBox::selectedItemData() const {
    const int index = ListIndex;
    if (index < 0 || index >= List.value().size())
        throw RuntimeFailure(FailureKind::Index, QStringLiteral("No port is selected."));
    return List.value().at(index).itemData;
}

Controls::Controls() {
    lblHeader.Caption = QStringLiteral("ZRK6957 loader");
    for (std::size_t i = 0; i < kSlotDesign.size(); ++i) {
        const SlotDesign& design = kSlotDesign[i];
        chkExeURK[i].Caption = QString::fromLatin1(design.caption);
        lblStart[i].Caption = QString::fromLatin1(design.addressCaption);
        lblSize[i].Caption = QStringLiteral("Size");
        txtStartAddress[i].Text = QString::fromLatin1(design.address);
        cmdBrowse[i].Caption = QStringLiteral("Browse");
    }
    cmdPrgFlash.Caption = QStringLiteral("Program Flash");
    chkErase.Caption = QStringLiteral("Full Erase (be patient!)");
    cmdStartPrimary.Caption = QStringLiteral("Load bin's / Start primary");
    cmdURK.Caption = QStringLiteral("Download U/R/K images");
    cmdStartSecondary.Caption = QStringLiteral("Start Secondary Executable");
    cmdTerminal.Caption = QStringLiteral("Enable &Terminal mode");
    cmdCancel.Caption = QStringLiteral("&Cancel && Close port");
    lblState.Caption = QStringLiteral("Closed...");
    cmdValidateAdrs.Caption = QStringLiteral("Validate Addresses");
    cmdOutput.Caption = QStringLiteral("Debug Send String:");
    txtOut.Text = QStringLiteral("4R");

    mnuFile.Caption = QStringLiteral(" &File");
    mnuLoadIni.Caption = QStringLiteral("&Load INI file");
    mnuWriteIni.Caption = QStringLiteral("&Write INI file");
    mnuExecScript.Caption = QStringLiteral("&Execute Script");
    mnuExecScript.Enabled = false;
    mnuExit.Caption = QStringLiteral("&Exit");
    mnuAbout.Caption = QStringLiteral(" &About");
}

QString Controls::slotTitle(std::size_t slot) const {
    return QString(chkExeURK.at(slot).Caption).remove(QLatin1Char('&'));
}

QString Controls::sizeOf(std::size_t slot) const {
    const QString size = lblCodeSize.at(slot).Caption;
    if (size.isEmpty())
        throw RuntimeFailure(FailureKind::TypeMismatch,
                             QStringLiteral("Type mismatch: the slot \"%1\" has no file and so no size. "
                                            "Choose a file for it.")
                                 .arg(slotTitle(slot)));
    return size;
}

} // namespace zrk
