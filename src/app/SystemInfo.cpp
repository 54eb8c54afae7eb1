#include "app/SystemInfo.h"

#include "config/Paths.h"
#include "controls/Desk.h"
#include "platform/ProgramStarter.h"
#include "platform/Registry.h"

namespace zrk {
namespace {

QString numberText(const QByteArray& data) {
    QString text = QStringLiteral("&h");
    for (auto byte = data.crbegin(); byte != data.crend(); ++byte)
        text += QStringLiteral("%1").arg(static_cast<std::uint8_t>(*byte), 2, 16, QLatin1Char('0')).toUpper();
    return text;
}

} // namespace

void SystemInfo::StartSysInfo() {
    const QString program = programPath();
    if (!program.isEmpty() && m_starter.start(program))
        return;
    m_desk.tell(QStringLiteral("System Information Is Unavailable At This Time"), MessageIcon::Information,
                QString());
}

QString SystemInfo::programPath() const {
    QString text;
    if (GetKeyValue(kLocalMachine, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                    QStringLiteral("PATH"), text))
        return text;
    if (!GetKeyValue(kLocalMachine, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"),
                     QStringLiteral("MSINFO"), text))
        return {};
    const QString program = text + QStringLiteral("\\MSINFO32.EXE");
    return FileExists(program, false) ? program : QString();
}

bool SystemInfo::GetKeyValue(std::uint32_t rootKey, const QString& key, const QString& value,
                             QString& text) const {
    const auto found = m_registry.query(rootKey, key, value);
    if (!found) {
        text.clear();
        return false;
    }
    QByteArray data = found->data;
    if (data.endsWith('\0'))
        data.chop(1);
    if (found->type == RegistryValue::kText)
        text = QString::fromLocal8Bit(data);
    else if (found->type == RegistryValue::kNumber)
        text = numberText(data);
    return true;
}

} // namespace zrk
