#include "cli/Output.h"

#include "cli/ExitStatus.h"
#include "cli/TimeText.h"
#include "cli/VisibleText.h"
#include "machine/StandardStreams.h"

#include <array>
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
    return {{QStringLiteral("status"), ending.status},   {QStringLiteral("reason"), reasonId(ending.reason)},
            {QStringLiteral("limit"), ending.limit},     {QStringLiteral("step"), ending.step},
            {QStringLiteral("seconds"), ending.seconds}, {QStringLiteral("bytes"), ending.bytes}};
}

QString nameOf(Severity severity) {
    static constexpr std::array kNames{"error", "warning", "notice", "detail"};
    return QString::fromLatin1(kNames.at(static_cast<std::size_t>(severity)));
}

} // namespace

QString closingText(const Ending& ending) {
    const QString time = QString::number(ending.seconds, 'f', 1);
    if (ending.status == 0)
        return ending.bytes == 0 ? QStringLiteral("Done in %1 s.").arg(time)
                                 : QStringLiteral("Done in %1 s: %2 bytes sent.").arg(time).arg(ending.bytes);
    const QString where = ending.step.isEmpty() ? QStringLiteral("before the first step")
                                                : QStringLiteral("in the step ") + ending.step;
    return QStringLiteral("Failed %1 after %2 s: %3 (status %4).")
        .arg(where, time, ending.reason)
        .arg(ending.status);
}

Output::~Output() {
    clearProgress();
    finishLine();
}

/// Prints the last piece of a line, which several boards hold back until now.
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
        tell(failure, Severity::Warning);
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
    // The NUL that a cancelled wait echoes would make a log file binary.
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

void Output::tell(const QString& text, Severity severity) {
    if (severity == Severity::Error)
        m_errors += text.simplified();
    clearProgress();
    if (isJson())
        event("message", {{QStringLiteral("severity"), nameOf(severity)}, {QStringLiteral("text"), text}});
    QByteArray lines;
    for (const QByteArray& line : messageLines(text).split('\n'))
        lines += named(line);
    m_printer.err(lines);
    recordMessage(text);
}

void Output::recordMessage(const QString& text) {
    if (m_transcript)
        m_transcript->writeMessage(text);
}

void Output::notice(const QString& text) {
    if (m_printer.style().quiet)
        recordMessage(text);
    else
        tell(text, Severity::Notice);
}

void Output::detail(const QString& text) {
    if (m_printer.style().verbose)
        tell(text, Severity::Detail);
}

void Output::beginBoard() {
    m_errors.clear();
    m_limit.clear();
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
    const QString line = progressName() + text;
    const bool fits = behind.size() + 1 + line.size() <= m_printer.columns();
    m_progressShown = true;
    m_printer.setProgress(m_place.row, !behind.isEmpty() && fits ? behind + QLatin1Char(' ') + line : line,
                          behind);
}

qsizetype Output::progressColumns() const {
    const qsizetype all = m_printer.columns() - progressName().size();
    const bool shared = m_printer.outputIsTerminal() && m_place.name.isEmpty();
    const qsizetype beside = shared ? all - m_unfinished.size() - 1 : all;
    return beside >= kLeastForProgress ? beside : all;
}

/// Cuts a long name, which must not take the room of the progress.
QString Output::progressName() const {
    constexpr qsizetype kLeast = 4;
    const qsizetype room = m_printer.columns() / 3;
    if (m_place.name.isEmpty() || room < kLeast)
        return {};
    const bool fits = m_place.name.size() <= room;
    return (fits ? m_place.name : QLatin1Char('~') + m_place.name.right(room - 1)) + QStringLiteral(": ");
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
    // The order of the fields is for the reader: event and time, then the rest.
    const QByteArray line =
        QByteArray("{\"event\":\"") + name + "\",\"time\":\"" + utcText().toLatin1() + "\",";
    fields.insert(QStringLiteral("label"), m_place.label);
    fields.insert(QStringLiteral("port"), m_place.port);
    m_printer.out(line + jsonLine(fields).mid(1) + '\n', weightOf(name));
}

void Output::addTo(QJsonObject& record, const Ending& ending) const {
    const QJsonObject fields = fieldsOf(ending);
    for (auto field = fields.constBegin(); field != fields.constEnd(); ++field)
        record.insert(field.key(), field.value());
    record.insert(QStringLiteral("text"), ending.text);
    record.insert(QStringLiteral("label"), m_place.label);
    record.insert(QStringLiteral("port"), m_place.port);
}

void Output::stepBegins(const QString& step) {
    event("step", {{QStringLiteral("step"), step}, {QStringLiteral("state"), QStringLiteral("begin")}});
}

void Output::stepEnds(const Ending& ending) {
    QJsonObject fields = fieldsOf(ending);
    fields.insert(QStringLiteral("state"), QStringLiteral("end"));
    event("step", fields);
}

void Output::result(const Ending& ending, const Tally& tally) {
    clearProgress();
    finishLine();
    QJsonObject fields = fieldsOf(ending);
    fields.insert(QStringLiteral("text"), ending.text);
    fields.insert(QStringLiteral("good"), tally.good);
    fields.insert(QStringLiteral("bad"), tally.bad);
    event("result", fields);
}

} // namespace zrk
