#include "script/MemoryCheck.h"

#include "config/HexConversions.h"
#include "platform/SecondsText.h"
#include "script/BoardListener.h"

#include <QRegularExpression>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kLook = 100ms;
constexpr std::chrono::milliseconds kQuiet = 1s;     ///< behind a prompt: the answer is over
constexpr std::chrono::milliseconds kLongQuiet = 5s; ///< behind a line that ended: a command may be at work

/// What stands behind the echo of the command: an earlier answer that comes late confirms nothing.
QByteArray behindEcho(const QByteArray& received, const QByteArray& command) {
    const qsizetype echo = received.indexOf(command);
    return echo < 0 ? QByteArray() : received.mid(echo + command.size());
}

bool holdsSum(const QByteArray& answer, const QString& sum) {
    const QRegularExpression word(QStringLiteral("\\b(0x)?%1\\b").arg(sum),
                                  QRegularExpression::CaseInsensitiveOption);
    return word.match(QString::fromLatin1(answer)).hasMatch();
}

/// True when there is more than the prompt, which ends no line, and nothing has followed for long enough.
bool isOver(const QByteArray& answer, std::chrono::milliseconds quiet) {
    const qsizetype end = answer.lastIndexOf('\n');
    if (end < 0 || answer.left(end).trimmed().isEmpty())
        return false;
    return quiet >= (end + 1 < answer.size() ? kQuiet : kLongQuiet);
}

} // namespace

void MemoryCheck::check(std::size_t slot, const QString& command, std::chrono::milliseconds limit,
                        const std::function<void(const QByteArray&)>& heard) {
    m_link.operation.runMarked([&] { return compare(slot, command, limit, heard); });
}

QString MemoryCheck::commandFor(std::size_t slot, const QString& command) const {
    const QString address = strictHexForm(NormalizeHex(m_link.controls.txtStartAddress[slot].Text));
    const QString bytes = QString::number(m_link.state.Sent[slot].value()->bytes, 16).toUpper();
    return QString(command)
        .replace(QLatin1String("%a"), QStringLiteral("0x") + address)
        .replace(QLatin1String("%n"), QStringLiteral("0x") + bytes);
}

Operation::End MemoryCheck::compare(std::size_t slot, const QString& command, std::chrono::milliseconds limit,
                                    const std::function<void(const QByteArray&)>& heard) {
    m_link.terminal.switchTo(false);
    m_link.port.OpenComPort();
    const QString asked = commandFor(slot, command);
    const QString sum = m_link.state.Sent[slot].value()->crcText();
    const QString title = m_link.controls.slotTitle(slot);
    if (const QByteArray unread = m_link.port.receive(); !unread.isEmpty())
        heard(unread);
    m_link.state.HeardBehind.clear();
    m_link.port.Output(asked + QLatin1Char('\r'));
    const PendingWait note =
        m_link.transport.noteWait(QStringLiteral("Waiting for the checksum of ") + title);
    const auto begin = m_link.loop.now();
    auto last = begin;
    const auto look = m_link.loop.wakeEvery(kLook);
    QByteArray received;
    while (!m_link.state.CancelRequested) {
        const QByteArray piece = m_link.port.receive();
        const auto now = m_link.loop.now();
        if (!piece.isEmpty()) {
            heard(piece);
            received += piece;
            last = now;
        }
        const QByteArray answer = behindEcho(received, asked.toLatin1());
        // Behind the word something has to stand, or it may be the beginning of a longer one.
        if (holdsSum(answer.chopped(answer.isEmpty() ? 0 : 1), sum))
            return Operation::End::Done;
        if (isOver(answer, std::chrono::duration_cast<std::chrono::milliseconds>(now - last)))
            fail(Outcome::WrongAnswer,
                 QStringLiteral("%1: the board does not confirm CRC-32 %2 of what was sent. It says: %3. "
                                "Either the memory holds something else, or the command is no checksum: %4")
                     .arg(title, sum, quotedEnd(answer.trimmed()), asked));
        if (now - begin >= limit)
            fail(Outcome::LimitReached, QStringLiteral("%1: no checksum came within %2 s. Received last: %3")
                                            .arg(title, secondsText(limit), quotedEnd(received)));
        m_link.loop.wait();
    }
    return Operation::End::Stopped;
}

void MemoryCheck::fail(Outcome why, const QString& text) {
    m_link.state.noteStop(why);
    throw RuntimeFailure(FailureKind::WrongAnswer, text);
}

} // namespace zrk
