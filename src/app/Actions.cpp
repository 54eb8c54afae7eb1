#include "app/Actions.h"

#include "app/AddressBoxes.h"
#include "app/ConsoleView.h"
#include "app/LoaderWidgets.h"
#include "app/PortList.h"
#include "loader/Loader.h"
#include "platform/RuntimeFailure.h"

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>

namespace zrk {
namespace {

/// A connector of a user's action with its handler.
class Wiring {
  public:
    Wiring(AddressBoxes& addresses, Desk& desk) : m_addresses(addresses), m_desk(desk) {}

    void click(QPushButton* button, std::function<void()> handler) const {
        QObject::connect(button, &QPushButton::clicked, button, guarded(std::move(handler)));
    }

    void trigger(QAction* entry, std::function<void()> handler) const {
        QObject::connect(entry, &QAction::triggered, entry, guarded(std::move(handler)));
    }

  private:
    [[nodiscard]] std::function<void()> guarded(std::function<void()> handler) const {
        return [handler = std::move(handler), &addresses = m_addresses, &desk = m_desk] {
            desk.state.Remark = {};
            addresses.commit();
            QString failure;
            try {
                handler();
            } catch (const RuntimeFailure& caught) {
                failure = caught.description();
            } catch (const std::exception& caught) {
                failure = QString::fromLocal8Bit(caught.what());
            }
            if (!failure.isEmpty())
                desk.tell(failure, MessageIcon::Exclamation, QStringLiteral("Error"));
        };
    }

    AddressBoxes& m_addresses;
    Desk& m_desk;
};

/// An input is an action, too: after it the addresses, for example, may no longer be valid.
void wireInputs(const LoaderWidgets& widgets, SharedState& state) {
    const auto forget = [&state] { state.Remark = {}; };
    for (const SlotWidgets& row : widgets.slots) {
        QObject::connect(row.chkExeURK, &QCheckBox::pressed, row.chkExeURK, forget);
        QObject::connect(row.txtStartAddress, &QLineEdit::textChanged, row.txtStartAddress, forget);
    }
    QObject::connect(widgets.cmbComPort, &PortList::currentIndexChanged, widgets.cmbComPort, forget);
}

void wireConsole(ConsoleView* console, Loader& loader) {
    console->setKeysGoToBoard([&loader] { return loader.state.TerminalMode && loader.port.isOpen(); });
    console->setStopPaste([&loader] { return loader.keys.stopPaste(); });
    QObject::connect(console, &ConsoleView::keyDown, console,
                     [&loader](int key, bool alt, bool shift, bool control) {
                         loader.keys.txtStatus_KeyDown(key, alt, shift, control);
                     });
    QObject::connect(console, &ConsoleView::typed, console,
                     [&loader](int character) { (void)loader.keys.txtStatus_KeyPress(character); });
    QObject::connect(console, &ConsoleView::pasted, console,
                     [&loader](const QString& text) { loader.keys.paste(text); });
}

} // namespace

void wireActions(const LoaderWidgets& widgets, Loader& loader, AddressBoxes& addresses,
                 const WindowActions& window) {
    const Wiring wiring(addresses, loader);
    wiring.click(widgets.cmdPrgFlash, [&loader] { loader.flash.cmdPrgFlash_Click(); });
    wiring.click(widgets.cmdStartPrimary, [&loader] { loader.bringUp.cmdStartPrimary_Click(); });
    wiring.click(widgets.cmdStartSecondary, [&loader] { loader.bringUp.cmdStartSecondary_Click(); });
    wiring.click(widgets.cmdURK, [&loader] { loader.commands.cmdURK_Click(); });
    wiring.click(widgets.cmdTerminal, [&loader] { loader.terminal.cmdTerminal_Click(); });
    wiring.click(widgets.cmdCancel, [&loader] { loader.portControl.cmdCancel_Click(); });
    wiring.click(widgets.cmdValidateAdrs, [&loader] { loader.validation.cmdValidateAdrs_Click(); });
    wiring.click(widgets.cmdOutput, [&loader] { loader.keys.cmdOutput_Click(); });
    for (int slot = 0; slot < kSlotCount; ++slot)
        wiring.click(widgets.slots[static_cast<std::size_t>(slot)].cmdBrowse,
                     [&loader, slot] { loader.fileChoice.cmdBrowse_Click(slot); });

    wiring.trigger(widgets.mnuLoadIni, [&loader] { loader.iniLoader.mnuLoadIni_Click(); });
    wiring.trigger(widgets.mnuWriteIni, [&loader] { loader.iniLoader.mnuWriteIni_Click(); });
    wiring.trigger(widgets.mnuExecScript, [&loader] { loader.script.mnuExecScript_Click(); });
    wiring.trigger(widgets.mnuExit, window.mnuExit_Click);
    wiring.trigger(widgets.mnuAbout, window.mnuAbout_Click);
    wireInputs(widgets, loader.state);
    wireConsole(widgets.txtStatus, loader);
}

} // namespace zrk
