#include "script/MemoryCheck.h"

#include "config/HexConversions.h"
#include "platform/SecondsText.h"
#include "script/BoardListener.h"

#include <QRegularExpression>

#include <algorithm>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds kQuiet = 1s;     ///< after a prompt: the answer is over
constexpr std::chrono::milliseconds kLongQuiet = 5s; ///< after a line that ended: a command may be at work

/// The board's answer, as much of it as can still matter. Only what comes after the echo of the command
/// counts: an earlier answer that comes late confirms nothing.
class BoardAnswer {
  public:
    BoardAnswer(const QByteArray& command, const QString& sum)
        : m_command(command),
          m_sum(QStringLiteral("\\b(0x)?%1\\b").arg(sum), QRegularExpression::CaseInsensitiveOption) {}

    void add(const QByteArray& piece) {
        m_heard += piece;
        const qsizetype echo = m_begin < 0 ? m_heard.indexOf(m_command) : -1;
        if (echo >= 0)
            m_begin = echo + m_command.size();
        if (m_begin >= 0)
            look();
        const qsizetype cut = m_heard.size() - std::max(kMostKept, m_command.size());
        if (cut <= 0)
            return;
        m_heard.remove(0, cut);
        // One character stays in front, which shows where a word begins.
        if (m_begin >= 0)
            m_begin = std::max<qsizetype>(m_begin - cut, 1);
    }

    [[nodiscard]] bool holdsSum() const { return m_holdsSum; }
    /// Returns whether more than the prompt, which ends no line, has come, and then nothing for long enough.
    [[nodiscard]] bool isOver(std::chrono::nanoseconds quiet) const {
        return m_holdsALine && quiet >= (m_heard.endsWith('\n') ? kLongQuiet : kQuiet);
    }
    [[nodiscard]] QByteArray text() const { return m_heard.mid(m_begin).trimmed(); }
    [[nodiscard]] const QByteArray& heard() const { return m_heard; }

  private:
    void look() {
        // A character must follow the word, or it may be the beginning of a longer one.
        m_holdsSum = m_holdsSum || m_sum.match(QString::fromLatin1(m_heard.chopped(1)), m_begin).hasMatch();
        const QByteArray lines = m_heard.mid(m_begin, m_heard.lastIndexOf('\n') - m_begin);
        m_holdsALine = m_holdsALine || (m_heard.lastIndexOf('\n') > m_begin && !lines.trimmed().isEmpty());
    }

    static constexpr qsizetype kMostKept = 4096;

    QByteArray m_command;
    QRegularExpression m_sum;
    QByteArray m_heard;
    qsizetype m_begin = -1; ///< of the answer in what was heard, -1 before the echo
    bool m_holdsSum = false;
    bool m_holdsALine = false;
};

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
        m_link.transport.noteWait(Awaited::Checksum, QStringLiteral("Waiting for the checksum of ") + title);
    const auto begin = m_link.loop.now();
    auto last = begin;
    const auto look = m_link.loop.wakeEvery(EventLoop::kLook);
    BoardAnswer answer(asked.toLatin1(), sum);
    while (!m_link.state.CancelRequested) {
        const QByteArray piece = m_link.port.receive();
        const auto now = m_link.loop.now();
        if (!piece.isEmpty()) {
            heard(piece);
            answer.add(piece);
            last = now;
        }
        if (answer.holdsSum())
            return Operation::End::Done;
        if (answer.isOver(now - last))
            m_link.operation.fail(
                Outcome::WrongAnswer,
                QStringLiteral(
                    "%1: the board does not confirm CRC-32 %2 of what was sent. It answered: %3. "
                    "Either the memory holds something else, or the command does not print a CRC-32: %4")
                    .arg(title, sum, quotedEnd(answer.text()), asked));
        if (now - begin >= limit)
            m_link.operation.fail(Outcome::LimitReached,
                                  QStringLiteral("%1: no checksum came within %2 s. Received last: %3")
                                      .arg(title, secondsText(limit), quotedEnd(answer.heard())));
        m_link.loop.wait();
    }
    return Operation::End::Stopped;
}

} // namespace zrk
