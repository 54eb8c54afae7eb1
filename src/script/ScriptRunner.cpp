#include "script/ScriptRunner.h"

#include "controls/PendingWait.h"
#include "files/PrintableText.h"
#include "files/TextFile.h"
#include "platform/FileDialog.h"
#include "platform/SecondsText.h"
#include "script/BoardListener.h"

#include <QScopedValueRollback>
#include <QStringDecoder>

#include <limits>

namespace zrk {

using namespace std::chrono_literals;

namespace {

/// Makes a character of each byte, as on the line. An editor's byte order mark is not part of the script;
/// that of UTF-16 determines how its characters are read.
QString textOf(const QByteArray& bytes) {
    constexpr qsizetype kUtf8MarkLength = 3;
    const auto marked = QStringConverter::encodingForData(bytes);
    if (!marked)
        return QString::fromLatin1(bytes);
    if (*marked == QStringConverter::Utf8)
        return QString::fromLatin1(bytes.mid(kUtf8MarkLength));
    QStringDecoder decoder(*marked, QStringConverter::Flag::Stateless);
    return decoder(bytes);
}

/// Reads the lines of the file, ended by CR, LF or CR LF.
QStringList readLines(const QString& path) {
    const TextFile file = readTextFile(path);
    if (file.fault != TextFile::Fault::None) {
        const bool opened = file.fault != TextFile::Fault::NotOpened;
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("Cannot %1 the script %2: %3. Choose another file.")
                                 .arg(opened ? QStringLiteral("read") : QStringLiteral("open"),
                                      printableText(path), file.why));
    }
    QString text = textOf(file.bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.isEmpty())
        return {};
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.split(QLatin1Char('\n'));
}

} // namespace

ScriptRunner::ScriptRunner(Link& link) : m_link(link) {}

void ScriptRunner::mnuExecScript_Click() {
    if (m_link.operation.isRunning())
        return;
    FileRequest request;
    request.title = QStringLiteral("Open script file");
    request.filters = {{QStringLiteral("Script Files (.scr)"), QStringLiteral("*.scr")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.folder = m_link.state.DialogFolder;
    const QString path = m_link.fileDialog.openFile(request);
    if (!path.isEmpty())
        runScript(path);
}

void ScriptRunner::runScript(const QString& path, std::optional<std::chrono::milliseconds> waitLimit) {
    if (m_link.operation.isRunning())
        return;
    m_waitLimit = waitLimit;
    m_consoleAtStart = m_link.controls.txtStatus.text().size();
    m_link.state.Remark = {};
    std::int16_t counter = 0;
    const auto body = [&] {
        m_link.controls.mnuExecScript.Enabled = false;
        m_link.operation.begin();
        runLines(readLines(path), counter);
        finish(counter);
        return m_link.state.CancelRequested ? Operation::End::Stopped : Operation::End::Done;
    };
    // Every failure ends the run without a box; the count shows how far it came.
    m_link.operation.run({body, [&] { finish(counter); }, Operation::Report::Nothing,
                          [&](const QString&) {
                              return QStringLiteral("The script has ended: %1 line%2 executed.")
                                  .arg(counter)
                                  .arg(QLatin1String(counter == 1 ? "" : "s"));
                          }});
    if (!m_link.operation.failure().isEmpty())
        m_link.state.Remark = {
            (counter > 0 ? QStringLiteral("The script ended at line %1: ").arg(counter) : QString()) +
                m_link.operation.failure(),
            RemarkSeverity::Failed};
}

void ScriptRunner::finish(int counter) {
    m_link.state.AwaitedText.clear();
    m_link.controls.staStatus.SecondPanel = QString();
    m_link.operation.finish();
    m_link.controls.mnuExecScript.Enabled = true;
    m_link.controls.staStatus.SecondPanel = QStringLiteral("%1 script lines executed.").arg(counter);
}

void ScriptRunner::runLines(const QStringList& lines, std::int16_t& counter) {
    for (const QString& line : lines) {
        if (m_link.state.CancelRequested)
            return;
        if (counter == std::numeric_limits<std::int16_t>::max())
            throw RuntimeFailure(FailureKind::Overflow, QStringLiteral("Overflow: the script is too long."));
        ++counter;
        m_link.controls.staStatus.SecondPanel = QStringLiteral("Executing script line %1").arg(counter);
        execute(line, counter);
    }
}

void ScriptRunner::execute(const QString& line, int number) {
    QString argument = line.mid(1);
    argument.replace(QLatin1String("/n"), QLatin1String("\r"));
    if (line.startsWith(QLatin1Char('>')))
        send(argument);
    else if (line.startsWith(QLatin1Char('<')))
        waitFor(argument, number);
}

/// Sends pieces that the transmit queue takes at once: a board that has stopped the line with XOFF must not
/// block the program, nor outlast the limit. The board's answer meanwhile is kept for the wait that follows.
void ScriptRunner::send(const QString& text) {
    const auto begin = m_link.loop.now();
    std::unique_ptr<Timer> look; // only if the line does not take the text at once
    qsizetype sent = fitsOneByteCodes(text) ? 0 : text.size();
    if (sent > 0)
        m_link.port.Output(text); // throws what is wrong with it
    while (sent < text.size() && !m_link.state.CancelRequested) {
        const QString piece = text.mid(sent, m_link.port.transmitRoom());
        if (piece.isEmpty()) {
            if (m_waitLimit && m_link.loop.now() - begin >= *m_waitLimit)
                m_link.operation.fail(
                    Outcome::LimitReached,
                    QStringLiteral("Only %1 of %2 bytes went out within %3 s. The board may have "
                                   "stopped the line with XOFF.")
                        .arg(QString::number(sent), QString::number(text.size()), secondsText(*m_waitLimit)));
            if (!look)
                look = m_link.loop.wakeEvery(EventLoop::kLook);
            const QScopedValueRollback held(m_link.state.ReceivedIsHeld, true);
            m_link.loop.wait();
        }
        m_link.port.Output(piece);
        sent += piece.size();
    }
}

void ScriptRunner::waitFor(const QString& text, int number) {
    if (!fitsOneByteCodes(text))
        throw RuntimeFailure(FailureKind::InvalidArgument,
                             QStringLiteral("\"%1\" contains a character that never comes over the line, "
                                            "which carries the codes 0 to 255.")
                                 .arg(text));
    m_link.state.AwaitedText = text;
    const QString shown = QString(text).replace(QLatin1Char('\r'), QLatin1String("/n"));
    const PendingWait note = m_link.transport.noteWait(
        Awaited::Text, QStringLiteral("Script line %1 waits for \"%2\"").arg(number).arg(shown));
    const auto look = m_link.loop.wakeEvery(EventLoop::kLook);
    m_link.loop.yield();
    while (!m_link.state.AwaitedText.isEmpty() && !m_link.state.CancelRequested) {
        // A lost device never sends the awaited text; the receive poll takes what it sent before.
        if (m_link.port.isLost() || !m_link.port.isOpen())
            (void)m_link.port.InBufferCount();
        requireTime(shown);
        m_link.loop.wait();
    }
}

void ScriptRunner::requireTime(const QString& shown) const {
    if (!m_waitLimit || m_link.loop.now() - m_link.state.WaitingSince < *m_waitLimit)
        return;
    const QString received = m_link.controls.txtStatus.text().mid(m_consoleAtStart);
    m_link.operation.fail(Outcome::LimitReached,
                          QStringLiteral("\"%1\" did not come within %2 s. Received last: %3")
                              .arg(shown, secondsText(*m_waitLimit), quotedEnd(received.toLatin1())));
}

} // namespace zrk
