#include "machine/YesNoQuestion.h"
#include "platform/EventLoop.h"

#include <QByteArray>
#include <QSocketNotifier>

#include <array>
#include <unistd.h>

namespace zrk {

bool YesNoQuestion::isPossible() const {
    return isatty(STDIN_FILENO) == 1;
}

bool YesNoQuestion::askYesNo() {
    m_withdrawn = false;
    QByteArray line;
    bool ended = false;
    QSocketNotifier notifier(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, &notifier, [&] {
        std::array<char, 256> piece{};
        const auto count = read(STDIN_FILENO, piece.data(), piece.size());
        if (count <= 0) {
            m_withdrawn = true;
            notifier.setEnabled(false);
            return;
        }
        line.append(piece.data(), count);
        ended = line.contains('\n');
    });
    while (!ended && !m_withdrawn)
        m_loop.wait();
    const QByteArray answer = line.trimmed().toLower();
    return m_withdrawn || answer == "y" || answer == "yes";
}

void YesNoQuestion::withdraw() {
    m_withdrawn = true;
    m_loop.wake();
}

} // namespace zrk
