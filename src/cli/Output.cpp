#include "cli/Output.h"

#include "cli/VisibleText.h"
#include "machine/StandardStreams.h"

#include <utility>

namespace zrk {
namespace {

constexpr qsizetype kLeastForProgress = 24;
/// A board that never ends its line must not decide over the memory, nor over the time to search it.
constexpr qsizetype kLongestLine = qsizetype{64} * 1024;

QByteArray systemLines(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return lines.toLocal8Bit();
}

QByteArray messageLines(const QString& text) {
    return systemLines(standardErrorIsTerminal() ? withVisibleControls(text) : text);
}

Printer::Weight weightOf(const QByteArray& event) {
    if (event == "progress" || event == "wait")
        return Printer::Weight::Progress;
    return event == "result" ? Printer::Weight::Result : Printer::Weight::Text;
}

QJsonObject fieldsOf(const Ending& ending) {
    return {{QStringLiteral("status"), ending.status},
            {QStringLiteral("reason"), ending.reason},
            {QStringLiteral("step"), ending.step},
            {QStringLiteral("seconds"), ending.seconds},
            {QStringLiteral("bytes"), ending.bytes}};
}

} // namespace

Output::~Output() {
    clearProgress();
    finishLine();
}

/// Of several boards the last piece of a line has been held back until now.
void Output::finishLine() {
    if (!m_place.name.isEmpty() && !m_unfinished.isEmpty())
        m_printer.out(named(std::exchange(m_unfinished, {})));
}

QByteArray Output::named(const QByteArray& line) const {
    return m_place.name.isEmpty() ? line + '\n' : m_place.name.toLocal8Bit() + ": " + line + '\n';
}

void Output::beginTranscript(const QStringList& inputs) {
    if (m_transcript)
        m_transcript->begin(inputs);
}

void Output::record(const QString& text, TextOrigin origin) {
    if (!m_transcript)
        return;
    m_transcript->write(text, origin);
    const QString failure = m_transcript->takeFailure();
    if (!failure.isEmpty())
        tell(failure);
}

/// What is left of a line waits until the line is whole, or too long, if other boards print as well.
void Output::put(QByteArray bytes) {
    m_unfinished += bytes;
    const qsizetype end = m_unfinished.lastIndexOf('\n');
    if (!m_place.name.isEmpty()) {
        bytes.clear();
        if (end >= 0) {
            for (const QByteArray& line : m_unfinished.left(end).split('\n'))
                bytes += named(line);
        }
    }
    m_unfinished = m_unfinished.mid(end + 1);
    if (m_unfinished.size() > kLongestLine) {
        if (!m_place.name.isEmpty())
            bytes += named(m_unfinished);
        m_unfinished.clear();
    }
    if (!bytes.isEmpty()) {
        clearProgress();
        m_printer.out(bytes);
    }
}

void Output::console(const QString& text, TextOrigin origin) {
    record(text, origin);
    if (isJson())
        return event("console", {{QStringLiteral("text"), text}});
    // The NUL that a cancelled wait echoes would make a log file count as binary.
    QString shown = text;
    shown.remove(QChar(u'\0'));
    put(systemLines(m_printer.outputIsTerminal() ? withVisibleControls(shown) : shown));
}

void Output::board(const QByteArray& bytes) {
    const QString text = QString::fromLatin1(bytes);
    record(text, TextOrigin::Board);
    if (isJson())
        return event("board", {{QStringLiteral("text"), text}});
    put(m_printer.outputIsTerminal() ? withVisibleControls(QString::fromLocal8Bit(bytes)).toLocal8Bit()
                                     : bytes);
}

void Output::raw(const QByteArray& bytes) {
    record(QString::fromLatin1(bytes), TextOrigin::Board);
    clearProgress();
    m_printer.out(bytes);
}

void Output::tell(const QString& text) {
    clearProgress();
    if (isJson())
        event("message", {{QStringLiteral("text"), text}});
    QByteArray lines;
    for (const QByteArray& line : messageLines(text).split('\n'))
        lines += named(line);
    m_printer.err(lines);
    if (m_transcript)
        m_transcript->writeMessage(text);
}

void Output::notice(const QString& text) {
    if (!m_printer.style().quiet)
        tell(text);
}

void Output::detail(const QString& text) {
    if (m_printer.style().verbose)
        tell(text);
}

void Output::ask(const QString& text) {
    clearProgress();
    if (isJson())
        event("prompt", {{QStringLiteral("text"), text}});
    m_printer.err('\n' + messageLines(text) + " [y/n] ");
}

void Output::progress(const QString& said) {
    if (!m_printer.showsProgress())
        return;
    const QString text = withVisibleControls(said);
    if (!overwrites())
        return m_printer.err(named(text.toLocal8Bit()), Printer::Weight::Progress);
    const bool shared = m_printer.outputIsTerminal() && m_place.name.isEmpty();
    const QString behind = shared ? QString::fromLocal8Bit(m_unfinished) : QString();
    const QString line = m_place.name.isEmpty() ? text : m_place.name + QStringLiteral(": ") + text;
    const bool fits = behind.size() + 1 + line.size() <= m_printer.columns();
    m_progressShown = true;
    m_printer.setProgress(m_place.row, !behind.isEmpty() && fits ? behind + QLatin1Char(' ') + line : line,
                          behind);
}

qsizetype Output::progressColumns() const {
    const qsizetype name = m_place.name.isEmpty() ? 0 : m_place.name.size() + 2;
    const qsizetype all = m_printer.columns() - name;
    const bool shared = m_printer.outputIsTerminal() && m_place.name.isEmpty();
    const qsizetype beside = shared ? all - m_unfinished.size() - 1 : all;
    return beside >= kLeastForProgress ? beside : all;
}

void Output::clearProgress() {
    if (!m_progressShown)
        return;
    m_progressShown = false;
    m_printer.setProgress(m_place.row, {});
}

void Output::event(const char* name, QJsonObject fields) {
    if (!isJson())
        return;
    // The order of the fields is the reader's: what it is and whose, then the rest.
    QByteArray line = QByteArray("{\"event\":\"") + name + '"';
    if (!m_place.name.isEmpty())
        fields.insert(QStringLiteral("port"), m_place.port);
    const QByteArray rest = jsonLine(fields);
    line += fields.isEmpty() ? QByteArray("}") : "," + rest.mid(1);
    m_printer.out(line + '\n', weightOf(name));
}

void Output::stepBegins(const QString& step) {
    event("step", {{QStringLiteral("step"), step}, {QStringLiteral("state"), QStringLiteral("begin")}});
}

void Output::stepEnds(const Ending& ending) {
    QJsonObject fields = fieldsOf(ending);
    fields.insert(QStringLiteral("state"), QStringLiteral("end"));
    event("step", fields);
}

void Output::result(const Ending& ending) {
    clearProgress();
    finishLine();
    QJsonObject fields = fieldsOf(ending);
    fields.insert(QStringLiteral("port"), m_place.port);
    event("result", fields);
}

} // namespace zrk
