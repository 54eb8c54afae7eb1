#include "cli/Transcript.h"

#include "files/PrintableText.h"
#include "files/RegularFile.h"
#include "platform/RuntimeFailure.h"

#include <QDateTime>

#include <utility>

namespace zrk {

Transcript::Transcript(const QString& path) : m_path(path), m_file(path) {
    if (const QString why = openRecord(m_file, OldRecord::Continue); !why.isEmpty())
        throw RuntimeFailure(
            FailureKind::File,
            QStringLiteral("Cannot write the transcript %1: %2.").arg(printableText(path), why));
}

void Transcript::write(const QString& text) {
    if (!m_file.isOpen())
        return;
    QString lines;
    for (const QChar c : text) {
        if (c == QLatin1Char('\r') || c == QChar(u'\0'))
            continue;
        if (std::exchange(m_lineBegins, false))
            lines += QDateTime::currentDateTime().toString(Qt::ISODateWithMs) + QLatin1Char(' ');
        lines += c;
        m_lineBegins = c == QLatin1Char('\n');
    }
    const QString why = appendToRecord(m_file, lines.toUtf8());
    if (why.isEmpty())
        return;
    m_failure =
        QStringLiteral("The transcript %1 ends here: %2. The run goes on.").arg(printableText(m_path), why);
    m_file.close();
}

void Transcript::writeMessage(const QString& text) {
    if (!m_lineBegins)
        write(QStringLiteral("\n"));
    for (const QString& line : text.split(QLatin1Char('\n')))
        write(QStringLiteral("* ") + line + QLatin1Char('\n'));
}

QString Transcript::takeFailure() {
    return std::exchange(m_failure, QString());
}

} // namespace zrk
