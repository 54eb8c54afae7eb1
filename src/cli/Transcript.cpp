#include "cli/Transcript.h"

#include "cli/TimeText.h"
#include "cli/VisibleText.h"
#include "files/PrintableText.h"
#include "platform/RuntimeFailure.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

namespace zrk {
namespace {

/// Before the port is open only the program and its power switch speak.
constexpr qsizetype kMostEarly = qsizetype{1} << 20;

/// Without the characters that end no line and would have no sign.
QString linesOf(const QString& text, TextOrigin origin) {
    QString lines = text;
    lines.remove(QLatin1Char('\r')).remove(QChar(u'\0'));
    return origin == TextOrigin::Board ? withVisibleControls(lines) : lines;
}

QString lineStart(TextOrigin origin) {
    return localText() + (origin == TextOrigin::Board ? QLatin1String(" | ") : QLatin1String(" * "));
}

} // namespace

Transcript::Transcript(QString path, qint64 longest) : m_path(std::move(path)), m_longest(longest) {}

void Transcript::begin(const QStringList& inputs) {
    QString why;
    if (!QDir().mkpath(QFileInfo(m_path).path()))
        why = QStringLiteral("its folder cannot be made");
    else
        why = openRecord(m_file, {m_path, inputs}, OldRecord::Continue);
    if (!why.isEmpty())
        throw RuntimeFailure(
            FailureKind::File,
            QStringLiteral("Cannot write the transcript %1: %2.").arg(printableText(m_path), why));
    m_hasBegun = true;
    put(std::exchange(m_early, {}));
}

void Transcript::write(const QString& text, TextOrigin origin) {
    const QString lines = linesOf(text, origin);
    const bool isAnswer = origin == TextOrigin::Board && text.size() == 1;
    QString marked;
    for (const QChar c : lines) {
        const bool isLineEnd = c == QLatin1Char('\n');
        if (!m_lineBegins && !isLineEnd && origin != m_lineOrigin && !isAnswer) {
            marked += QLatin1Char('\n');
            m_lineBegins = true;
        }
        if (std::exchange(m_lineBegins, isLineEnd)) {
            m_lineOrigin = origin;
            marked += lineStart(origin);
        }
        marked += c;
    }
    put(marked.toUtf8());
}

void Transcript::put(const QByteArray& lines) {
    if (!m_hasBegun && m_early.size() + lines.size() <= kMostEarly)
        m_early += lines;
    if (!m_file.isOpen())
        return;
    const QString why = appendToRecord(m_file, lines, m_longest);
    if (why.isEmpty())
        return;
    m_failure =
        QStringLiteral("The transcript %1 ends here: %2. The run goes on.").arg(printableText(m_path), why);
    m_file.close();
}

void Transcript::writeMessage(const QString& text) {
    if (!m_lineBegins)
        write(QStringLiteral("\n"), m_lineOrigin);
    for (const QString& line : text.split(QLatin1Char('\n')))
        write(line + QLatin1Char('\n'), TextOrigin::Loader);
}

QString Transcript::takeFailure() {
    return std::exchange(m_failure, QString());
}

} // namespace zrk
