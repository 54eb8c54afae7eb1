#include "app/WindowBinding.h"

#include "app/AddressTree.h"
#include "app/Binder.h"
#include "app/ConsoleTools.h"
#include "app/ConsoleView.h"
#include "app/FileNameEdit.h"
#include "app/LoaderStyle.h"
#include "app/LoaderWidgets.h"
#include "app/PlainToolTip.h"
#include "app/PortList.h"
#include "app/StatusPanels.h"
#include "app/terminal/ScreenView.h"
#include "files/PrintableText.h"
#include "loader/Loader.h"
#include "loader/TransferRate.h"
#include "machine/PortDescription.h"
#include "platform/PortCatalog.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace zrk {
namespace {

using WhileBusy = Binder::WhileBusy;

void bindButton(Binder& binder, CommandButton& value, QPushButton* button, WhileBusy whileBusy) {
    binder.caption(value.Caption, button);
    binder.enabled(value.Enabled, button, whileBusy);
}

void bindEntry(Binder& binder, MenuEntry& value, QAction* entry, WhileBusy whileBusy) {
    binder.caption(value.Caption, entry);
    binder.enabled(value.Enabled, entry, whileBusy);
}

void bindFileMark(Binder& binder, Label& value, QLabel* mark) {
    binder.follow(value.Caption, [&value, mark] {
        const QString reason = value.Caption;
        const QIcon icon = mark->style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, mark);
        mark->setPixmap(reason.isEmpty() ? QPixmap() : icon.pixmap(mark->width()));
        mark->setToolTip(reason);
        mark->setHidden(reason.isEmpty());
    });
}

void showAddressRemark(QLineEdit& box, const QString& remark) {
    QPalette colours;
    if (!remark.isEmpty())
        colours.setColor(QPalette::Text, warningColor(colours));
    box.setPalette(colours);
    box.setToolTip(plainToolTip(remark));
}

/// Shows the folder of a slot's file, and the file that is really sent if links lead to another one.
void showToolTip(const TextBox& value, FileNameEdit* field) {
    const QString folder = printableText(value.ToolTipText);
    const QString real = value.Tag.value().isEmpty() ? QString() : realFileBehindLinks(value.Tag);
    field->setToolTip(
        plainToolTip(real.isEmpty() ? folder : folder + QStringLiteral("\nReal file: ") + real));
}

/// Returns "126,976 bytes, about 12 s on the line" for a slot's size.
QString lineTimeOf(const Controls& controls, std::size_t slot) {
    const auto bytes = controls.sizeInBytes(slot);
    return bytes ? QStringLiteral("%1 bytes, %2 on the line")
                       .arg(QLocale().toString(*bytes), lineTimeText(*bytes))
                 : QString();
}

/// Returns the same and, once it has been sent, its checksum, to compare with one that the board prints.
QString sizeToolTip(const Loader& loader, std::size_t slot) {
    const std::optional<SentImage>& sent = loader.state.Sent[slot].value();
    return sent
               ? QStringLiteral("%1\nSent: %2 bytes, CRC-32 %3")
                     .arg(lineTimeOf(loader.controls, slot), QLocale().toString(sent->bytes), sent->crcText())
               : lineTimeOf(loader.controls, slot);
}

void bindSlots(Binder& binder, const LoaderWidgets& widgets, Loader& loader) {
    Controls& controls = loader.controls;
    for (std::size_t i = 0; i < widgets.slots.size(); ++i) {
        const SlotWidgets& row = widgets.slots[i];
        binder.checkBox(controls.chkExeURK[i], row.chkExeURK);
        bindFileMark(binder, controls.lblFileChanged[i], row.lblFileChanged);
        binder.textBox(controls.txtFilNam[i], row.txtFilNam);
        binder.follow(controls.txtFilNam[i].Text, [&controls, i, field = row.txtFilNam] {
            field->setMissing(FileNameEdit::tellsOfMissing(controls.txtFilNam[i].Text));
        });
        const auto showFile = [&controls, i, field = row.txtFilNam] {
            showToolTip(controls.txtFilNam[i], field);
        };
        binder.follow(controls.txtFilNam[i].ToolTipText, showFile);
        binder.follow(controls.txtFilNam[i].Tag, showFile);
        bindButton(binder, controls.cmdBrowse[i], row.cmdBrowse, WhileBusy::Grey);
        binder.caption(controls.lblStart[i].Caption, row.lblStart);
        binder.textBox(controls.txtStartAddress[i], row.txtStartAddress);
        binder.follow(controls.AddressRemark[i],
                      [box = row.txtStartAddress, &remark = controls.AddressRemark[i]] {
                          showAddressRemark(*box, remark);
                      });
        binder.caption(controls.lblSize[i].Caption, row.lblSize);
        binder.caption(controls.lblCodeSize[i].Caption, row.lblCodeSize);
        // In decimal, since the display itself is hexadecimal.
        const auto explain = [&loader, i, label = row.lblCodeSize] {
            label->setToolTip(sizeToolTip(loader, i));
        };
        binder.follow(controls.lblCodeSize[i].Caption, explain);
        binder.follow(loader.state.Sent[i], explain);
    }
}

void bindButtons(Binder& binder, const LoaderWidgets& widgets, Controls& controls) {
    bindButton(binder, controls.cmdPrgFlash, widgets.cmdPrgFlash, WhileBusy::Grey);
    binder.checkBox(controls.chkErase, widgets.chkErase);
    binder.follow(controls.lblCodeSize[kFlashImage].Caption, [&controls, label = widgets.lblFlashTime] {
        label->setText(lineTimeOf(controls, kFlashImage));
    });
    bindButton(binder, controls.cmdStartPrimary, widgets.cmdStartPrimary, WhileBusy::Grey);
    bindButton(binder, controls.cmdStartSecondary, widgets.cmdStartSecondary, WhileBusy::Grey);
    bindButton(binder, controls.cmdURK, widgets.cmdURK, WhileBusy::Grey);
    bindButton(binder, controls.cmdTerminal, widgets.cmdTerminal, WhileBusy::Grey);
    bindButton(binder, controls.cmdCancel, widgets.cmdCancel, WhileBusy::AsItIs);
    bindButton(binder, controls.cmdValidateAdrs, widgets.cmdValidateAdrs, WhileBusy::Grey);
    // With the protocols muted, the user feeds an operation by hand, so this stays live while one runs.
    bindButton(binder, controls.cmdOutput, widgets.cmdOutput, WhileBusy::AsItIs);
    binder.textBox(controls.txtOut, widgets.txtOut);
}

void bindMenus(Binder& binder, const LoaderWidgets& widgets, Controls& controls) {
    bindEntry(binder, controls.mnuFile, widgets.mnuFile, WhileBusy::AsItIs);
    bindEntry(binder, controls.mnuLoadIni, widgets.mnuLoadIni, WhileBusy::Grey);
    bindEntry(binder, controls.mnuWriteIni, widgets.mnuWriteIni, WhileBusy::Grey);
    bindEntry(binder, controls.mnuExecScript, widgets.mnuExecScript, WhileBusy::Grey);
    bindEntry(binder, controls.mnuExit, widgets.mnuExit, WhileBusy::AsItIs);
    bindEntry(binder, controls.mnuAbout, widgets.mnuAbout, WhileBusy::Grey);
}

void bindConsole(ConsoleView* view, ConsoleText& console) {
    const auto showAll = [view, &console] { view->showAnew(console.text()); };
    showAll();
    QObject::connect(view, &ConsoleView::overwritten, view, showAll);
    console.onEdit([view, &console](qsizetype removed, const QString& inserted, TextOrigin) {
        view->follow(console.text(), removed, inserted.size());
    });
}

void bindAddressList(AddressTree* list, Loader& loader) {
    const auto show = [list, &loader] {
        list->clear();
        for (const AddressList::Row& row : loader.controls.lvwAdrs.rows()) {
            auto* item = new QTreeWidgetItem(list, {row.index, row.start, row.size});
            const QString name = loader.state.SlotNames.at(static_cast<std::size_t>(row.index.toInt()));
            for (int column = 0; column < list->columnCount(); ++column) {
                item->setToolTip(column, row.conflicts ? name + QStringLiteral(": overlaps") : name);
                if (row.conflicts)
                    item->setForeground(column, warningColor(list->palette()));
            }
            if (row.conflicts)
                item->setIcon(0, list->style()->standardIcon(QStyle::SP_MessageBoxWarning));
        }
        list->fitColumns();
    };
    show();
    loader.controls.lvwAdrs.onChange(show);
}

/// Returns what distinguishes a port from the others in the list.
QString listText(const PortEntry& port) {
    QStringList facts{port.adapter, port.serialNumber};
    facts.removeAll(QString());
    return facts.isEmpty()
               ? port.device
               : QStringLiteral("%1 (%2)").arg(port.device, printableText(facts.join(QLatin1Char(' '))));
}

/// Describes the ports; a device that is not one of the machine's ports still has its name.
PortList::Descriptions describePorts(const Loader& loader, const PortCatalog& catalog) {
    PortList::Descriptions all;
    for (const ListEntry& entry : loader.controls.cmbComPort.List.value()) {
        const QString device = loader.port.deviceName(entry.itemData);
        if (!device.isEmpty())
            all.insert(entry.itemData, {device, device, false});
    }
    for (const PortEntry& port : catalog.ports()) {
        for (const int number : port.numbers)
            all.insert(number,
                       {listText(port), describe(port).join(QLatin1Char('\n')), port.isThere.value_or(true)});
    }
    return all;
}

} // namespace

void bindWindow(Binder& binder, const LoaderWidgets& widgets, Loader& loader, const PortCatalog& catalog) {
    Controls& controls = loader.controls;
    binder.caption(controls.lblHeader.Caption, widgets.lblHeader);
    bindSlots(binder, widgets, loader);
    bindButtons(binder, widgets, controls);
    bindMenus(binder, widgets, controls);
    binder.comboBox(controls.cmbComPort, widgets.cmbComPort);
    widgets.cmbComPort->setDescriptions(loader.loop,
                                        [&loader, &catalog] { return describePorts(loader, catalog); });
    binder.caption(controls.lblState.Caption, widgets.lblState);
    bindStatusBar(binder, widgets, controls, loader.state.DebugMode);
    bindConsole(widgets.txtStatus, controls.txtStatus);
    bindAddressList(widgets.lvwAdrs, loader);
}

void unbindWindow(Loader& loader) {
    loader.controls.txtStatus.forgetListeners();
    loader.controls.txtStatus.onFocusRequested({});
    loader.controls.lvwAdrs.onChange({});
}

void setTabOrders(const LoaderWidgets& widgets) {
    QList<QWidget*> order{widgets.tglDebug, widgets.cmdOutput, widgets.txtOut};
    const std::array<QWidget*, kSlotCount> actions{
        widgets.cmdStartPrimary, widgets.cmdStartSecondary, widgets.cmdURK, nullptr, nullptr,
        widgets.chkErase,        widgets.cmdPrgFlash};
    for (const Slot slot : kWindowOrder) {
        const auto i = static_cast<std::size_t>(slot);
        const SlotWidgets& row = widgets.slots[i];
        order << row.chkExeURK << row.txtFilNam << row.cmdBrowse << row.txtStartAddress;
        if (actions[i] != nullptr)
            order << actions[i];
    }
    order << widgets.cmbComPort << widgets.cmdTerminal << widgets.cmdCancel << widgets.lvwAdrs
          << widgets.cmdValidateAdrs << widgets.consoleTools->tabOrder() << widgets.txtStatus
          << widgets.scrStatus;
    for (qsizetype i = 1; i < order.size(); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

} // namespace zrk
