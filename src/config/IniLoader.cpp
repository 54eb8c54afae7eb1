#include "config/IniLoader.h"

#include "config/AddressEntry.h"
#include "config/ImageSlots.h"
#include "config/IniFile.h"
#include "config/Paths.h"

#include <QStringList>

namespace zrk {
IniLoader::IniLoader(Desk& desk, ImageSlots& slots, AddressEntry& addresses)
    : m_desk(desk), m_slots(slots), m_addresses(addresses) {}

void IniLoader::mnuLoadIni_Click() {
    std::array<QString, kSlotCount> values;
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = GetIniValue(m_desk.state.IniPath, QString::fromLatin1(kSlots[i].section),
                                QString::fromLatin1(kSlots[i].key));
    for (int slot = 0; slot < kSlotCount; ++slot)
        applyValue(slot, values[static_cast<std::size_t>(slot)]);
}

void IniLoader::applyValue(int slot, const QString& value) {
    if (value.isEmpty())
        return;
    const QStringList fields = value.split(QLatin1Char(','));
    applyFile(slot, m_slots.paths().ResolvePath(fields[0]),
              fields.size() > 1 ? fields[1].trimmed() : QStringLiteral("0"));
}

void IniLoader::applyFile(int slot, const QString& path, const QString& address) {
    if (!FileExists(path, true)) {
        clearSlot(slot, path);
        return;
    }
    m_desk.controls.txtStartAddress[static_cast<std::size_t>(slot)].Text = address;
    m_addresses.txtStartAddress_Validate(slot);
    m_slots.fill(slot, path);
}

void IniLoader::clearSlot(int slot, const QString& path) {
    const auto i = static_cast<std::size_t>(slot);
    m_desk.controls.txtFilNam[i].Text = QStringLiteral("CAN'T FIND: ") + m_slots.paths().FileNameOf(path);
    m_desk.controls.txtFilNam[i].ToolTipText = QStringLiteral("File Not Found, check .INI file");
    m_desk.controls.txtFilNam[i].Tag = QString();
    m_desk.controls.txtStartAddress[i].Text = QString::fromLatin1(kSlots[i].addressWhenMissing);
    m_desk.controls.lblCodeSize[i].Caption = QString();
    m_desk.controls.chkExeURK[i].Value = 0;
    if (slot == kPrimaryBoot)
        m_desk.controls.cmdStartPrimary.Enabled = false;
}

void IniLoader::mnuWriteIni_Click() {
    m_desk.tell(QStringLiteral("Not yet implemented. Please edit ") + m_desk.state.IniPath +
                    QStringLiteral(" yourselfes"),
                MessageIcon::Information, QStringLiteral("Not yet implemented"));
}

} // namespace zrk
