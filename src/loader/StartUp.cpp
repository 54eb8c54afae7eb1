#include "loader/StartUp.h"

#include "config/IniLoader.h"
#include "config/Paths.h"
#include "files/PrintableText.h"

namespace zrk {
namespace {

constexpr int kPortCount = 8;

} // namespace

StartUp::StartUp(Link& link, IniLoader& iniLoader) : m_link(link), m_iniLoader(iniLoader) {}

void StartUp::prepare(const ProgramFacts& facts) {
    fillPortList();
    fillSlotNames();
    m_link.transport.ArmReplyTimer(false);
    m_link.state.withdrawStop();
    m_link.controls.txtStatus.replaceEnd(m_link.controls.txtStatus.text().size(), QString());
    m_link.controls.cmdStartPrimary.Enabled = false;
    m_link.controls.cmdStartSecondary.Enabled = false;
    m_link.controls.cmdURK.Enabled = false;
    m_link.controls.lblHeader.Caption = QStringLiteral("%1, V%2.%3 (rev %4)")
                                            .arg(m_link.controls.lblHeader.Caption.value())
                                            .arg(facts.major)
                                            .arg(facts.minor)
                                            .arg(facts.revision);
    m_link.controls.pgbDownload.Value = 0.0;
    m_link.state.DialogFolder = facts.folder;
}

void StartUp::Form_Load(const ProgramFacts& facts, const QString& iniPath) {
    prepare(facts);
    m_link.state.IniPath = iniPath;
    if (FileExists(m_link.state.IniPath, true)) {
        m_iniLoader.mnuLoadIni_Click();
        return;
    }
    m_link.tell(QStringLiteral("No INI File found. Expect ") + printableText(m_link.state.IniPath) +
                    QStringLiteral("\r\nDefault values are NOT set!"),
                MessageIcon::Information, QStringLiteral("No file"));
}

void StartUp::fillPortList() {
    QList<ListEntry> ports;
    for (int number = 1; number <= kPortCount; ++number)
        ports.append({QStringLiteral("COM%1:").arg(number), number});
    m_link.controls.cmbComPort.List = ports;
    m_link.controls.cmbComPort.ListIndex = 0;
}

void StartUp::fillSlotNames() {
    auto& names = m_link.state.SlotNames;
    names = {};
    for (std::size_t i = 0; i < kSlots.size(); ++i)
        names[i] = QString::fromLatin1(kSlots[i].listName);
    // After the slots that have a name come the fixed rows of the address list.
    names[5] = QStringLiteral("UBoot marker (0x80000000)");
    names[6] = QStringLiteral("UBoot marker (0x82000000)");
    names[7] = QStringLiteral("maximum address");
}

} // namespace zrk
