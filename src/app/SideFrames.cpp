#include "app/SideFrames.h"

#include "app/AddressTree.h"
#include "app/Disclosure.h"
#include "app/LoaderWidgets.h"
#include "app/PortList.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zrk {
namespace {

constexpr int kSideSpacing = 2;
constexpr QMargins kMargins(5, 2, 5, 2);

} // namespace

QWidget* buildPortFrame(LoaderWidgets& widgets, QWidget* parent) {
    widgets.fraComPort =
        named(new QGroupBox(QStringLiteral("Comport control"), parent), QStringLiteral("fraComPort"));
    widgets.cmbComPort = named(new PortList(widgets.fraComPort), QStringLiteral("cmbComPort"));
    widgets.cmbComPort->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    widgets.lblState = named(new QLabel(widgets.fraComPort), QStringLiteral("lblState"));
    widgets.cmdTerminal = named(new QPushButton(widgets.fraComPort), QStringLiteral("cmdTerminal"));
    widgets.cmdCancel = named(new QPushButton(widgets.fraComPort), QStringLiteral("cmdCancel"));

    auto* grid = new QGridLayout(widgets.fraComPort);
    grid->setContentsMargins(kMargins);
    grid->setSpacing(kSideSpacing);
    grid->addWidget(widgets.cmbComPort, 0, 0);
    grid->addWidget(widgets.lblState, 0, 1);
    grid->addWidget(widgets.cmdTerminal, 1, 0, 1, 2);
    grid->addWidget(widgets.cmdCancel, 2, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    return widgets.fraComPort;
}

QWidget* buildAddressFrame(LoaderWidgets& widgets, QWidget* parent) {
    auto* frame =
        named(new QGroupBox(QStringLiteral("SDRAM addresses"), parent), QStringLiteral("fraAddresses"));
    widgets.lvwAdrs = named(new AddressTree(frame), QStringLiteral("lvwAdrs"));
    widgets.cmdValidateAdrs = named(new QPushButton(frame), QStringLiteral("cmdValidateAdrs"));

    auto* column = new QVBoxLayout(frame);
    column->setContentsMargins(kMargins);
    column->setSpacing(kSideSpacing);
    column->addWidget(widgets.lvwAdrs, 1);
    column->addWidget(widgets.cmdValidateAdrs);
    return frame;
}

QWidget* buildDebugSend(LoaderWidgets& widgets, QWidget* parent) {
    auto* debug = new Disclosure(QStringLiteral("Debug"), parent);
    debug->unfoldToTheLeft();
    widgets.tglDebug = debug->toggle();
    widgets.cmdOutput = named(new QPushButton(debug), QStringLiteral("cmdOutput"));
    widgets.txtOut = named(new QLineEdit(debug), QStringLiteral("txtOut"));
    debug->addWidget(widgets.cmdOutput);
    debug->addWidget(widgets.txtOut);
    return debug;
}

} // namespace zrk
