#include "cli/AnswerTimes.h"

#include "cli/Output.h"
#include "script/BoardListener.h"

#include <utility>

namespace zrk {
namespace {

constexpr qsizetype kLongest = 40;

QString exactSeconds(EventLoop::TimePoint::duration time) {
    return QString::number(std::chrono::duration<double>(time).count(), 'f', 3);
}

} // namespace

void AnswerTimes::note(const QString& text, TextOrigin origin) {
    if (origin == TextOrigin::Board) {
        m_answer += text.toLatin1();
        m_answered = m_loop.now();
        return;
    }
    if (text.contains(QLatin1Char('\n')) && !m_answer.isEmpty())
        report();
    if (m_answer.isEmpty())
        m_asked = m_loop.now();
}

void AnswerTimes::report() {
    const QByteArray answer = std::exchange(m_answer, {});
    m_output.detail(
        QStringLiteral("%1 s: %2 after %3 s")
            .arg(exactSeconds(m_answered - m_begin),
                 answer.size() > kLongest ? QStringLiteral("%1 bytes").arg(answer.size()) : quotedEnd(answer),
                 exactSeconds(m_answered - m_asked)));
}

} // namespace zrk
