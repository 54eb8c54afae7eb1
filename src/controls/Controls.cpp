#include "controls/Controls.h"

#include "platform/RuntimeFailure.h"

namespace zrk {
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
    for (std::size_t i = 0; i < kSlots.size(); ++i) {
        chkExeURK[i].Caption = QString::fromLatin1(kSlots[i].caption);
        lblStart[i].Caption = QString::fromLatin1(addressCaption(kSlots[i].memory));
        lblSize[i].Caption = QStringLiteral("Size");
        txtStartAddress[i].Text = QString::fromLatin1(kSlots[i].designAddress);
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

std::optional<std::int64_t> Controls::sizeInBytes(std::size_t slot) const {
    bool isNumber = false;
    const qlonglong size = lblCodeSize.at(slot).Caption.value().toLongLong(&isNumber, 16);
    return isNumber ? std::optional<std::int64_t>(size) : std::nullopt;
}

QString Controls::sizeOf(std::size_t slot) const {
    QString size = lblCodeSize.at(slot).Caption;
    if (size.isEmpty())
        throw RuntimeFailure(FailureKind::TypeMismatch,
                             QStringLiteral("Type mismatch: the slot \"%1\" has no file and so no size. "
                                            "Choose a file for it.")
                                 .arg(slotTitle(slot)));
    return size;
}

} // namespace zrk
