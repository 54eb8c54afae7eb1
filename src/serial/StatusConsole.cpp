#include "serial/StatusConsole.h"

namespace zrk {

void StatusConsole::PrintStatus(const QString& text) {
    QString copy = text;
    copy.replace(QLatin1String("/n"), QLatin1String("\r\n"));
    m_txtStatus.append(copy);
    m_loop.yield();
}

} // namespace zrk
