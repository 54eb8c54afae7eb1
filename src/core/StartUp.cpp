#include "core/StartUp.h"

#include "config/IniLoader.h"
#include "config/Paths.h"
#include "platform/MessageBoxes.h"
#include "serial/Transport.h"

namespace zrk {
namespace {

constexpr int kPortCount = 8;

} // namespace

StartUp::StartUp(SharedState& state, Controls& controls, Transport& transport, IniLoader& iniLoader,
                 MessageBoxes& boxes)
    : m_state(state), m_controls(controls), m_transport(transport), m_iniLoader(iniLoader), m_boxes(boxes) {}

void StartUp::prepare(const ProgramFacts& facts) {
    fillPortList();
    fillSlotNames();
    m_transport.ArmReplyTimer(false);
    m_state.withdrawStop();
    m_controls.txtStatus.replaceEnd(m_controls.txtStatus.text().size(), QString());
    m_controls.cmdStartPrimary.Enabled = false;
    m_controls.cmdStartSecondary.Enabled = false;
    m_controls.cmdURK.Enabled = false;
    m_controls.lblHeader.Caption = QStringLiteral("%1, V%2.%3 (rev %4)")
                                       .arg(m_controls.lblHeader.Caption.value())
                                       .arg(facts.major)
                                       .arg(facts.minor)
                                       .arg(facts.revision);
    m_controls.pgbDownload.Value = 0.0;
}

void StartUp::Form_Load(const ProgramFacts& facts, const Paths& paths, const QString& iniPath) {
    prepare(facts);
    m_state.IniPath = iniPath.isEmpty() ? paths.joined(facts.name + QStringLiteral(".INI")) : iniPath;
    if (FileExists(m_state.IniPath, true)) {
        m_iniLoader.mnuLoadIni_Click();
        return;
    }
    m_state.MessageText = QStringLiteral("No INI File found. Expect ") + m_state.IniPath +
                          QStringLiteral("\r\nDefault values are NOT set!");
    (void)m_boxes.show(
        {m_state.MessageText, MessageIcon::Information, MessageButtons::Ok, QStringLiteral("No file")});
}

void StartUp::fillPortList() {
    QList<ListEntry> ports;
    for (int number = 1; number <= kPortCount; ++number)
        ports.append({QStringLiteral("COM%1:").arg(number), number});
    m_controls.cmbComPort.List = ports;
    m_controls.cmbComPort.ListIndex = 0;
}

void StartUp::fillSlotNames() {
    m_state.SlotNames = {QString(),
                         QStringLiteral("Secondary Executable"),
                         QStringLiteral("UBoot image"),
                         QStringLiteral("Root FS image"),
                         QStringLiteral("Kernel image"),
                         QStringLiteral("UBoot marker (0x80000000)"),
                         QStringLiteral("UBoot marker (0x82000000)"),
                         QStringLiteral("maximum address")};
}

} // namespace zrk
