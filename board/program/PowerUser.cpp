#include "board/program/PowerUser.h"

namespace zrkboard {

namespace {

bool worthKeeping(State state) {
    switch (state) {
    case State::Announcing:
    case State::PrimaryWaiting:
    case State::Prompt:
        return true;
    default:
        return false;
    }
}

} // namespace

void PowerUser::loaderOpened(TimePoint now) {
    m_openedAt = now;
    m_spoke = false;
}

bool PowerUser::wantsPowerCycle(const Scene& scene, TimePoint now) {
    if (scene.lineBusy || scene.state == State::Off || scene.state == State::HungUp)
        return false;
    if (!m_openedAt)
        return !worthKeeping(scene.state);
    if (m_spoke || m_patience == Duration::zero() || now < *m_openedAt + m_patience)
        return false;
    if (scene.terminalMode)
        m_spoke = true; // and that stays so after terminal mode
    return !scene.terminalMode && scene.state != State::Announcing;
}

std::optional<TimePoint> PowerUser::nextLook(TimePoint now) const {
    if (!m_openedAt || m_spoke || m_patience == Duration::zero() || now >= *m_openedAt + m_patience)
        return std::nullopt;
    return *m_openedAt + m_patience;
}

} // namespace zrkboard
