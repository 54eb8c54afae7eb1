#pragma once

#include "controls/AddressList.h"
#include "controls/ConsoleText.h"
#include "controls/SlotTable.h"
#include "controls/StatusRemark.h"

#include <QList>
#include <QProperty>
#include <QString>

#include <array>
#include <cstdint>
#include <optional>

namespace zrk {

/// The main window's controls as values. The operations read and write these; a window binds its widgets to
/// them, the command line fills them from its options, and a test needs neither. Each field notifies its
/// listeners of changes. In captions "&" marks the access key.

struct CommandButton {
    QProperty<QString> Caption;
    QProperty<bool> Enabled{true};
};

struct MenuEntry {
    QProperty<QString> Caption;
    QProperty<bool> Enabled{true};
};

struct CheckBox {
    QProperty<QString> Caption;
    QProperty<int> Value{0}; ///< 1 ticked, 0 not; readers take any value above 0 as ticked
    [[nodiscard]] bool isTicked() const { return Value > 0; }
};

struct TextBox {
    QProperty<QString> Text;
    QProperty<QString> Tag; ///< for a file name: the full path
    QProperty<QString> ToolTipText;
};

struct Label {
    QProperty<QString> Caption;
};

/// An entry of a list, with its number.
struct ListEntry {
    QString text;
    int itemData = 0;
};

bool operator==(const ListEntry& a, const ListEntry& b);

struct ComboBox {
    QProperty<QList<ListEntry>> List;
    QProperty<int> ListIndex{-1};
    QProperty<bool> Enabled{true};
    /// Returns the selected entry's number; throws RuntimeFailure (Index) if nothing is selected.
    [[nodiscard]] int selectedItemData() const;
};

struct ProgressBar {
    QProperty<double> Value{0.0}; ///< 0 to 100
};

/// The texts of the status bar's panels; the third hosts the progress bar.
struct StatusBar {
    QProperty<QString> FirstPanel;
    QProperty<RemarkSeverity> FirstPanelSeverity{RemarkSeverity::Note};
    QProperty<QString> SecondPanel;
};

struct Controls {
    /// Sets all controls to their design state: captions, texts and what is enabled.
    Controls();

    /// Returns a slot's caption without the mark of its access key, for example "UBoot image".
    [[nodiscard]] QString slotTitle(std::size_t slot) const;

    /// Returns a slot's size in bytes; empty if it has no file.
    [[nodiscard]] std::optional<std::int64_t> sizeInBytes(std::size_t slot) const;

    /// Returns a slot's size as its label shows it. Throws RuntimeFailure (TypeMismatch), which names the
    /// slot and what to do, if it has none.
    [[nodiscard]] QString sizeOf(std::size_t slot) const;

    Label lblHeader;

    // One of each per image slot.
    std::array<CheckBox, kSlotCount> chkExeURK;
    std::array<TextBox, kSlotCount> txtFilNam;
    std::array<TextBox, kSlotCount> txtStartAddress;
    std::array<QProperty<QString>, kSlotCount> AddressRemark; ///< what was typed was taken for something else
    std::array<Label, kSlotCount> lblStart;
    std::array<Label, kSlotCount> lblSize;
    std::array<Label, kSlotCount> lblCodeSize;
    std::array<CommandButton, kSlotCount> cmdBrowse;
    std::array<Label, kSlotCount> lblFileChanged; ///< why the slot's row is marked; empty: no mark

    CommandButton cmdPrgFlash;
    CheckBox chkErase;
    CommandButton cmdStartPrimary;
    CommandButton cmdURK;
    CommandButton cmdStartSecondary;

    CommandButton cmdTerminal;
    CommandButton cmdCancel;
    ComboBox cmbComPort;
    Label lblState;

    ConsoleText txtStatus;
    AddressList lvwAdrs;
    CommandButton cmdValidateAdrs;
    StatusBar staStatus;
    ProgressBar pgbDownload;
    CommandButton cmdOutput;
    TextBox txtOut;

    MenuEntry mnuFile;
    MenuEntry mnuLoadIni;
    MenuEntry mnuWriteIni;
    MenuEntry mnuExecScript;
    MenuEntry mnuExit;
    MenuEntry mnuAbout;
};

} // namespace zrk
