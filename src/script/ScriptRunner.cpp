#include "script/ScriptRunner.h"

#include "config/Paths.h"
#include "platform/FileDialog.h"
#include "platform/RuntimeFailure.h"
#include "serial/ComPort.h"
#include "serial/Operation.h"
#include "serial/WaitNote.h"

#include <QFile>
#include <QScopedValueRollback>

#include <limits>

namespace zrk {
namespace {

/// The lines of the file, ended by CR, LF or CR LF; a byte is the character of its code, as on the line.
QStringList readLines(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw RuntimeFailure(FailureKind::File,
                             QStringLiteral("Cannot open the script %1: %2.").arg(path, file.errorString()));
    QString text = QString::fromLatin1(file.readAll());
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    if (text.isEmpty())
        return {};
    if (text.endsWith(QLatin1Char('\n')))
        text.chop(1);
    return text.split(QLatin1Char('\n'));
}

} // namespace

ScriptRunner::ScriptRunner(SharedState& state, Controls& controls, ComPort& port, const Paths& paths,
                           FileDialog& dialog, Operation& operation, EventLoop& loop)
    : m_state(state), m_controls(controls), m_port(port), m_paths(paths), m_dialog(dialog),
      m_operation(operation), m_loop(loop) {}

void ScriptRunner::mnuExecScript_Click() {
    if (m_operation.isRunning())
        return;
    FileRequest request;
    request.title = QStringLiteral("Open script file");
    request.filters = {{QStringLiteral("Script Files (.scr)"), QStringLiteral("*.scr")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    request.folder = m_paths.folder();
    const QString path = m_dialog.openFile(request);
    if (!path.isEmpty())
        runScript(path);
}

void ScriptRunner::runScript(const QString& path) {
    std::int16_t counter = 0;
    const auto body = [&] {
        m_controls.mnuExecScript.Enabled = false;
        m_operation.begin();
        runLines(readLines(path), counter);
        finish(counter);
        return m_state.CancelRequested ? Operation::End::Stopped : Operation::End::Done;
    };
    // Every failure is an end of the run; the count tells how far it came.
    m_operation.run({body, [&] { finish(counter); }, Operation::Report::Nothing});
}

void ScriptRunner::finish(int counter) {
    m_state.AwaitedText.clear();
    m_controls.staStatus.SecondPanel = QString();
    m_operation.finish();
    m_controls.mnuExecScript.Enabled = true;
    m_controls.staStatus.SecondPanel = QStringLiteral("%1 script lines executed.").arg(counter);
}

void ScriptRunner::runLines(const QStringList& lines, std::int16_t& counter) {
    for (const QString& line : lines) {
        if (m_state.CancelRequested)
            return;
        if (counter == std::numeric_limits<std::int16_t>::max())
            throw RuntimeFailure(FailureKind::Overflow, QStringLiteral("Overflow: the script is too long."));
        ++counter;
        m_controls.staStatus.SecondPanel = QStringLiteral("Executing script line %1").arg(counter);
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

/// In pieces that the transmit queue takes at once: a board that has stopped the line with XOFF must not
/// stop the program. The board's answer meanwhile is for the wait that follows.
void ScriptRunner::send(const QString& text) {
    qsizetype sent = fitsOneByteCodes(text) ? 0 : text.size();
    if (sent > 0)
        m_port.Output(text); // which says what is wrong with it
    while (sent < text.size() && !m_state.CancelRequested) {
        const QString piece = text.mid(sent, m_port.transmitRoom());
        if (piece.isEmpty()) {
            const QScopedValueRollback held(m_state.ReceivedIsHeld, true);
            m_loop.wait();
        }
        m_port.Output(piece);
        sent += piece.size();
    }
}

void ScriptRunner::waitFor(const QString& text, int number) {
    m_state.AwaitedText = text;
    const QString shown = QString(text).replace(QLatin1Char('\r'), QLatin1String("/n"));
    const WaitNote note(m_state, QStringLiteral("Script line %1 waits for \"%2\"").arg(number).arg(shown),
                        m_loop.now());
    m_loop.yield();
    while (!m_state.AwaitedText.isEmpty() && !m_state.CancelRequested) {
        // A lost device never sends the awaited text; what it sent before is taken by the receive poll.
        if (m_port.isLost() || !m_port.isOpen())
            (void)m_port.InBufferCount();
        m_loop.wait();
    }
}

} // namespace zrk
