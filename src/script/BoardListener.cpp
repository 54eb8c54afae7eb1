#include "script/BoardListener.h"

#include "platform/SecondsText.h"
#include "serial/PatientOpening.h"

#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr qsizetype kRemembered = 200;
constexpr char kBootId = '5';

QString visible(char byte) {
    if (byte == '\r')
        return QStringLiteral("\\r");
    if (byte == '\n')
        return QStringLiteral("\\n");
    const auto code = static_cast<unsigned char>(byte);
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kDelete = 0x7F;
    constexpr unsigned char kFirstPrintableAbove = 0xA0;
    if (code < kFirstPrintable || (code >= kDelete && code < kFirstPrintableAbove))
        return QStringLiteral("\\x") + QStringLiteral("%1").arg(code, 2, 16, QLatin1Char('0')).toUpper();
    return QString(QLatin1Char(byte));
}

} // namespace

QString quotedEnd(const QByteArray& text) {
    if (text.isEmpty())
        return QStringLiteral("nothing");
    QString shown;
    for (const char byte : text.right(kRemembered))
        shown += visible(byte);
    return QLatin1Char('"') + shown + QLatin1Char('"');
}

void BoardListener::expect(const QByteArray& text, Limit limit,
                           const std::function<void(const QByteArray&)>& heard,
                           const QList<QByteArray>& unwanted) {
    m_link.operation.runMarked([&] { return listen(text, limit, heard, unwanted); });
}

void BoardListener::openPort(Limit limit) {
    m_link.operation.runMarked([&] {
        const PendingWait note =
            m_link.transport.noteWait(Awaited::Port, QStringLiteral("Waiting for the port"));
        return openWithin(m_link, limit) ? Operation::End::Done : Operation::End::Stopped;
    });
}

void BoardListener::awaitProgram(std::chrono::milliseconds limit) {
    m_link.operation.runMarked([&] { return watchStart(limit); });
}

Operation::End BoardListener::listen(const QByteArray& text, Limit limit,
                                     const std::function<void(const QByteArray&)>& heard,
                                     const QList<QByteArray>& unwanted) {
    qsizetype longest = text.size();
    for (const QByteArray& one : unwanted)
        longest = qMax(longest, one.size());
    m_link.terminal.switchTo(false);
    m_link.port.OpenComPort();
    const PendingWait note =
        m_link.transport.noteWait(Awaited::Text, QStringLiteral("Waiting for ") + quotedEnd(text));
    const auto begin = m_link.loop.now();
    const auto look = m_link.loop.wakeEvery(EventLoop::kLook);
    // Keep what may still be the beginning of the text, and what messages show; a script has shown its part.
    QByteArray received = std::exchange(m_link.state.HeardBehind, {}).toLatin1();
    const qsizetype first = received.indexOf(text);
    requireNone(unwanted, text, received, first);
    if (first >= 0) {
        m_link.state.HeardBehind = QString::fromLatin1(received.mid(first + text.size()));
        return Operation::End::Done;
    }
    while (!m_link.state.CancelRequested) {
        const QByteArray piece = m_link.port.receive();
        // A text across the border begins at most its length before it.
        const qsizetype from = qMax<qsizetype>(received.size() - text.size() + 1, 0);
        const qsizetype before = received.size();
        received += piece;
        const qsizetype found = received.indexOf(text, from);
        const qsizetype used = found < 0 ? piece.size() : found + text.size() - before;
        m_link.port.putBack(piece.mid(used));
        if (used > 0)
            heard(piece.left(used));
        requireNone(unwanted, text, received, found);
        if (found >= 0)
            return Operation::End::Done;
        received = received.right(qMax(kRemembered, longest));
        if (limit && m_link.loop.now() - begin >= *limit)
            m_link.operation.fail(Outcome::LimitReached,
                                  QStringLiteral("%1 did not come within %2 s. Received last: %3")
                                      .arg(quotedEnd(text), secondsText(*limit), quotedEnd(received)));
        if (piece.isEmpty())
            m_link.loop.wait();
        else
            m_link.loop.yield();
    }
    return Operation::End::Stopped;
}

/// Ends the operation if one of the texts has come, not behind the awaited one at `found`; -1: that has not
/// come.
void BoardListener::requireNone(const QList<QByteArray>& unwanted, const QByteArray& text,
                                const QByteArray& received, qsizetype found) {
    for (const QByteArray& one : unwanted) {
        const qsizetype at = received.indexOf(one);
        if (at >= 0 && (found < 0 || at < found))
            m_link.operation.fail(Outcome::WrongAnswer,
                                  QStringLiteral("%1 came before %2. Received last: %3")
                                      .arg(quotedEnd(one), quotedEnd(text), quotedEnd(received)));
    }
}

Operation::End BoardListener::watchStart(std::chrono::milliseconds limit) {
    const PendingWait note =
        m_link.transport.noteWait(Awaited::Start, QStringLiteral("The board starts the program"));
    const auto begin = m_link.loop.now();
    const auto look = m_link.loop.wakeEvery(EventLoop::kLook);
    QByteArray received;
    while (!m_link.state.CancelRequested) {
        const QByteArray piece = m_link.port.receive();
        m_link.port.putBack(piece);
        received = piece;
        // A program's own text may begin with a "5" as well; the boot ROM sends nothing else.
        if (received.count(kBootId) < received.size())
            return Operation::End::Done;
        if (m_link.port.isLost())
            (void)m_link.port.transmitRoom(); // throws the reason
        if (received.size() > 1 || m_link.loop.now() - begin >= limit) {
            if (received.isEmpty())
                m_link.operation.fail(
                    Outcome::LimitReached,
                    QStringLiteral("The board has sent nothing within %1 s of the start. Was the secondary "
                                   "executable loaded, and is its address right?")
                        .arg(secondsText(limit)));
            m_link.operation.fail(
                Outcome::WrongAnswer,
                QStringLiteral(
                    "The board announces its BootID (\"5\") instead of starting the program: it is "
                    "in its boot ROM. Load the program again, then start it."));
        }
        m_link.loop.wait();
    }
    return Operation::End::Stopped;
}

} // namespace zrk
