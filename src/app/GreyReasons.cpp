#include "app/GreyReasons.h"

#include "app/Binder.h"
#include "app/ConsoleTools.h"
#include "app/FileNameEdit.h"
#include "app/LoaderWidgets.h"
#include "loader/Loader.h"

#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>

namespace zrk {
namespace {

const QString kBusy = QStringLiteral("An operation is running: wait for its end, or press Cancel.");
const QString kNeedsPrimary =
    QStringLiteral("The primary boot must run first: tick Primary Boot and Secondary Executable, then press "
                   "\"Load bin's / Start primary\".");

/// Returns why the control is grey, "" if it is not; `own` is the reason without an operation.
template <typename W>
void explain(Binder& binder, QProperty<bool>& enabled, QProperty<bool>& busy, W* control,
             const QString& own) {
    const auto show = [&enabled, &busy, control, own] {
        control->setToolTip(busy ? kBusy : enabled ? QString() : own);
    };
    binder.follow(enabled, show);
    binder.follow(busy, show);
}

} // namespace

QString reasonWhileBusy() {
    return kBusy;
}

void bindGreyReasons(Binder& binder, const LoaderWidgets& widgets, Loader& loader) {
    Controls& controls = loader.controls;
    QProperty<bool>& busy = loader.state.OperationActive;
    explain(binder, controls.cmdStartPrimary.Enabled, busy, widgets.cmdStartPrimary,
            QStringLiteral("Choose the file of Primary Boot (IRAM) first."));
    explain(binder, controls.cmdStartSecondary.Enabled, busy, widgets.cmdStartSecondary, kNeedsPrimary);
    explain(binder, controls.cmdURK.Enabled, busy, widgets.cmdURK, kNeedsPrimary);
    explain(binder, controls.cmdPrgFlash.Enabled, busy, widgets.cmdPrgFlash, QString());
    explain(binder, controls.cmdTerminal.Enabled, busy, widgets.cmdTerminal, QString());
    explain(binder, controls.cmdValidateAdrs.Enabled, busy, widgets.cmdValidateAdrs, QString());
    explain(binder, controls.mnuExecScript.Enabled, busy, widgets.mnuExecScript,
            QStringLiteral("Scripts run in terminal mode: press \"Enable Terminal mode\" first."));
    explain(binder, controls.mnuLoadIni.Enabled, busy, widgets.mnuLoadIni, QString());
    explain(binder, controls.mnuWriteIni.Enabled, busy, widgets.mnuWriteIni, QString());
    explain(binder, controls.mnuAbout.Enabled, busy, widgets.mnuAbout, QString());
    for (QAction* entry : {widgets.mnuOpenIni, widgets.mnuRecentIni, widgets.mnuSaveIniAs}) {
        binder.follow(busy, [&busy, entry] {
            entry->setEnabled(!busy);
            entry->setToolTip(busy ? kBusy : QString());
        });
    }
    binder.follow(busy, [&busy, save = widgets.consoleTools->saveButton(),
                         own = widgets.consoleTools->saveButton()->toolTip()] {
        save->setEnabled(!busy);
        save->setToolTip(busy ? kBusy : own);
    });
    widgets.mnuFile->menu()->setToolTipsVisible(true);
    for (std::size_t i = 0; i < widgets.slots.size(); ++i)
        explain(binder, controls.cmdBrowse[i].Enabled, busy, widgets.slots[i].cmdBrowse, QString());
}

} // namespace zrk
