#include "serial/ConsoleKeys.h"

#include "platform/RuntimeFailure.h"
#include "serial/ComPort.h"
#include "serial/PortErrors.h"

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr int kKeyB = 66;
constexpr std::chrono::milliseconds kPulse = 100ms;
constexpr std::chrono::milliseconds kPumpInterval = 10ms;
constexpr ushort kHighestCode = 0xFF;
constexpr qsizetype kMostUnasked = 20; // lines of a paste

} // namespace

ConsoleKeys::ConsoleKeys(Desk& desk, ComPort& port)
    : m_desk(desk), m_port(port), m_pump(desk.loop.createTimer([this] { pump(); })) {}

void ConsoleKeys::txtStatus_KeyDown(int keyCode, bool alt, bool shift, bool control) {
    if (keyCode == kKeyB && alt && !shift && !control)
        PulseDtr();
}

int ConsoleKeys::txtStatus_KeyPress(int character) {
    if (character >= 0 && character <= kHighestCode)
        send(QByteArray(1, static_cast<char>(character)));
    return 0;
}

void ConsoleKeys::paste(const QString& text) {
    QString lines = text;
    lines.replace(QLatin1String("\r\n"), QLatin1String("\r"));
    lines.replace(QLatin1Char('\n'), QLatin1Char('\r'));
    lines.removeIf([](QChar c) { return c.unicode() > kHighestCode; });
    pasteBytes(lines.toLatin1());
}

void ConsoleKeys::pasteBytes(const QByteArray& bytes) {
    const qsizetype lines = pastedLines(bytes);
    if (!isAllowed() || (lines > kMostUnasked && !mayPaste(lines, bytes.size())))
        return;
    m_pasted.add(m_typedAhead + bytes); // in the order of typing
    m_typedAhead.clear();
    pump();
}

bool ConsoleKeys::mayPaste(qsizetype lines, qsizetype bytes) {
    const QString prompt =
        QStringLiteral(
            "Paste %1 lines (%2 bytes)?\r\nThe board gets them as if you had typed them. Escape stops.")
            .arg(lines)
            .arg(bytes);
    return m_desk.show({prompt, MessageIcon::Question, MessageButtons::YesNo, QStringLiteral("Paste")}) ==
               Answer::Yes &&
           isAllowed();
}

bool ConsoleKeys::stopPaste() {
    if (m_pasted.isEmpty())
        return false;
    const QString remark = QStringLiteral("The paste was stopped after line %1 of %2.")
                               .arg(m_pasted.linesSent())
                               .arg(m_pasted.lines());
    m_typedAhead.prepend(m_pasted.stop());
    endPaste(remark);
    pump();
    return true;
}

void ConsoleKeys::showProgress() {
    if (m_pasted.lines() < 2)
        return;
    const QString progress = QStringLiteral("Pasting: line %1 of %2. Escape stops.")
                                 .arg(m_pasted.linesSent())
                                 .arg(m_pasted.lines());
    if (progress == m_progress)
        return;
    m_progress = progress;
    m_desk.state.Remark = {progress};
}

void ConsoleKeys::endPaste(const QString& remark) {
    if (!m_progress.isEmpty() && m_desk.state.Remark.text.startsWith(m_progress))
        m_desk.state.Remark = {remark};
    m_progress.clear();
}

void ConsoleKeys::send(const QByteArray& bytes) {
    if (!isAllowed())
        return;
    m_typedAhead += bytes;
    pump();
}

bool ConsoleKeys::isAllowed() const {
    return m_desk.state.TerminalMode && m_port.isOpen();
}

void ConsoleKeys::pump() {
    try {
        if (isAllowed())
            sendPiece();
        else
            dropAll();
    } catch (const RuntimeFailure&) {
        dropAll(); // the watch over the idle port reports the lost device
    }
    if (m_pasted.isEmpty() && m_typedAhead.isEmpty())
        m_pump->stop();
    else if (!m_pump->isActive())
        m_pump->start(kPumpInterval);
}

void ConsoleKeys::sendPiece() {
    const bool pastes = !m_pasted.isEmpty();
    QByteArray piece;
    if (pastes) {
        piece = m_pasted.take(m_port.transmitRoom(), m_desk.loop.now());
    } else if (!m_typedAhead.isEmpty()) {
        piece = m_typedAhead.left(m_port.transmitRoom());
        m_typedAhead.remove(0, piece.size());
    }
    if (!piece.isEmpty())
        m_port.Output(QString::fromLatin1(piece));
    if (pastes && m_pasted.isEmpty())
        endPaste(QStringLiteral("Pasted %1 lines.").arg(m_pasted.lines()));
    else if (pastes)
        showProgress();
}

void ConsoleKeys::dropAll() {
    (void)m_pasted.stop();
    m_typedAhead.clear();
    endPaste(QString());
}

void ConsoleKeys::PulseDtr() {
    if (m_pulsing || !m_port.isOpen())
        return;
    m_pulsing = true;
    try {
        (void)switchDtrOffAndOn();
    } catch (const RuntimeFailure& failure) {
        showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    }
    m_pulsing = false;
}

bool ConsoleKeys::switchDtrOffAndOn() {
    const bool isThere = m_port.setDtrEnable(false);
    const auto end = m_desk.loop.now() + kPulse;
    const auto timer = m_desk.loop.wakeEvery(kPulse);
    while (m_desk.loop.now() < end)
        m_desk.loop.wait();
    if (m_port.isOpen())
        m_port.setDtrEnable(true);
    return isThere;
}

void ConsoleKeys::cmdOutput_Click() {
    try {
        // In terminal mode the board may stop the line as long as it likes, so never block.
        const bool mustWait = !m_pasted.isEmpty() || !m_typedAhead.isEmpty() ||
                              m_port.transmitRoom() < m_desk.controls.txtOut.Text.value().size();
        if (m_desk.state.TerminalMode && mustWait && fitsOneByteCodes(m_desk.controls.txtOut.Text))
            send(m_desk.controls.txtOut.Text.value().toLatin1());
        else
            m_port.Output(m_desk.controls.txtOut.Text);
    } catch (const RuntimeFailure& failure) {
        showPortError(m_desk, m_port.CommPort(), PortErrorHint::OtherIo, failure);
    }
}

} // namespace zrk
