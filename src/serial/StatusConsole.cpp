#include "serial/StatusConsole.h"

namespace zrk {

void StatusConsole::PrintStatus(const QString& text) {
    QString copy = text;
    copy.replace(QLatin1String("/n"), QLatin1String("\r\n"));
    PrintPlain(copy);
}

void StatusConsole::PrintPlain(const QString& text) {
    m_txtStatus.append(text);
    m_loop.yield();
}

void StatusConsole::PrintAnswer(const QString& answer) {
    m_txtStatus.append(answer, TextOrigin::Board);
    m_loop.yield();
}

} // namespace zrk
