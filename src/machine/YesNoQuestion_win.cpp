#include "machine/YesNoQuestion.h"
#include "platform/EventLoop.h"

#include <QByteArray>

#include <cstdio>
#include <future>
#include <io.h>
#include <memory>
#include <string>
#include <thread>
#include <windows.h>

namespace zrk {

bool YesNoQuestion::isPossible() const {
    return _isatty(_fileno(stdin)) != 0;
}

bool YesNoQuestion::askYesNo() {
    m_withdrawn = false;
    // The event loop cannot watch a console handle, so another thread reads the line. It is left to itself
    // when the question is withdrawn, since nothing ends a blocked console read. It does not read through
    // stdin, whose lock it would hold at the program's end.
    auto answered = std::make_shared<std::promise<std::string>>();
    auto line = answered->get_future();
    std::thread([answered, &loop = m_loop] {
        std::string text(256, '\0');
        DWORD count = 0;
        const bool isRead = ReadFile(GetStdHandle(STD_INPUT_HANDLE), text.data(),
                                     static_cast<DWORD>(text.size()), &count, nullptr) != 0;
        answered->set_value(isRead && count > 0 ? text.substr(0, count) : "y");
        loop.wake();
    }).detach();
    while (!m_withdrawn && line.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
        m_loop.wait();
    if (m_withdrawn)
        return true;
    const QByteArray answer = QByteArray::fromStdString(line.get()).trimmed().toLower();
    return answer == "y" || answer == "yes";
}

void YesNoQuestion::withdraw() {
    m_withdrawn = true;
    m_loop.wake();
}

} // namespace zrk
