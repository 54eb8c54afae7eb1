#include "support/ScriptedPort.h"

namespace zrktest {

void ScriptedPort::follow(std::vector<Step> next) {
    steps = std::move(next);
    m_next = 0;
    m_got.clear();
    if (!steps.empty() && steps[0].when.isEmpty())
        answer(steps[m_next++], m_loop.now());
}

void ScriptedPort::delivered(char byte, TimePoint when) {
    m_got += byte;
    if (m_next == steps.size() || !m_got.endsWith(steps[m_next].when))
        return;
    m_got.clear();
    answer(steps[m_next++], when);
}

void ScriptedPort::answer(const Step& step, TimePoint when) {
    const qsizetype piece = oneByOne ? 1 : step.answer.size();
    for (qsizetype i = 0; i < step.answer.size(); i += piece)
        send(step.answer.mid(i, piece), when + step.delay + i * std::chrono::milliseconds(1));
    if (step.action)
        m_loop.schedule(when + step.delay, step.action);
}

void ScriptedPort::send(const QByteArray& bytes, TimePoint when) {
    m_loop.schedule(when, [this, bytes, run = m_run] {
        if (run == m_run)
            receive(bytes);
    });
}

} // namespace zrktest
