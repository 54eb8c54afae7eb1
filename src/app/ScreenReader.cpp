#include "app/ScreenReader.h"

#include "app/AddressTree.h"
#include "app/Binder.h"
#include "app/ConsoleView.h"
#include "app/FileNameEdit.h"
#include "app/LoaderWidgets.h"
#include "app/PortList.h"
#include "app/terminal/ScreenView.h"

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>

namespace zrk {
namespace {

/// Puts the text into the name, since a screen reader reads only the name of a label.
void nameWithText(Binder& binder, Label& value, QLabel* label, const QString& name) {
    binder.follow(value.Caption, [&value, label, name] {
        label->setAccessibleName(QStringLiteral("%1 %2").arg(name, value.Caption.value()).trimmed());
    });
}

void nameSlot(Binder& binder, const SlotWidgets& row, Controls& controls, std::size_t slot) {
    const QString title = controls.slotTitle(slot) + QStringLiteral(": ");
    row.txtFilNam->setAccessibleName(title + QStringLiteral("file"));
    row.cmdBrowse->setAccessibleName(title + QStringLiteral("browse"));
    row.txtStartAddress->setAccessibleName(title + QStringLiteral("address"));
    row.lblStart->setAccessibleName(title + controls.lblStart[slot].Caption);
    row.lblSize->setAccessibleName(title + controls.lblSize[slot].Caption);
    nameWithText(binder, controls.lblCodeSize[slot], row.lblCodeSize, title + QStringLiteral("size"));
    Label& mark = controls.lblFileChanged[slot];
    nameWithText(binder, mark, row.lblFileChanged, title);
    binder.follow(mark.Caption,
                  [&mark, file = row.txtFilNam] { file->setAccessibleDescription(mark.Caption); });
}

} // namespace

void nameForScreenReader(Binder& binder, const LoaderWidgets& widgets, Controls& controls) {
    for (std::size_t slot = 0; slot < widgets.slots.size(); ++slot)
        nameSlot(binder, widgets.slots[slot], controls, slot);
    widgets.txtOut->setAccessibleName(QStringLiteral("Debug string"));
    widgets.cmbComPort->setAccessibleName(QStringLiteral("Port"));
    nameWithText(binder, controls.lblState, widgets.lblState, QStringLiteral("Port state:"));
    widgets.lvwAdrs->setAccessibleName(QStringLiteral("Address ranges"));
    widgets.txtStatus->setAccessibleName(QStringLiteral("Status / Terminal output"));
    widgets.scrStatus->setAccessibleName(QStringLiteral("Terminal screen"));
    widgets.scrStatus->setAccessibleDescription(
        QStringLiteral("Its text can be read in the text view, Ctrl+Shift+S"));
    widgets.pgbDownload->setAccessibleName(QStringLiteral("Download progress"));
}

} // namespace zrk
