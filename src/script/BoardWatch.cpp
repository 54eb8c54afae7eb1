#include "script/BoardWatch.h"

#include "platform/RuntimeFailure.h"

#include <utility>

namespace zrk {

using namespace std::chrono_literals;

namespace {

constexpr char kAnnouncement = '5';
/// BootIDs come alone; what a program prints comes together.
constexpr std::chrono::milliseconds kApart = 200ms;
/// A board that announces itself so often does not leave that much between two.
constexpr qsizetype kEnoughTogether = 3;
constexpr std::chrono::milliseconds kReopenEvery = 500ms;
constexpr std::chrono::milliseconds kUntilRemark = 10s;

} // namespace

void BoardWatch::awaitBoard(bool old, const std::function<void()>& stillThere,
                            const std::function<void(const QString& why)>& notOpened) {
    m_link.operation.runMarked([&] { return watch(old, stillThere, notOpened); });
}

Operation::End BoardWatch::watch(bool old, const std::function<void()>& stillThere,
                                 const std::function<void(const QString& why)>& notOpened) {
    m_link.terminal.switchTo(false);
    const PendingWait note = m_link.transport.noteWait(
        Awaited::NextBoard, QStringLiteral("Waiting for the next board's power-on"));
    const auto look = m_link.loop.wakeEvery(EventLoop::kLook);
    const auto begin = m_link.loop.now();
    auto heardLast = begin;
    auto nextOpening = begin;
    bool isOldBoard = old;
    bool isRemarked = false;
    QString lastFault;
    QByteArray together;
    while (!m_link.state.CancelRequested) {
        const auto now = m_link.loop.now();
        if (!m_link.port.isOpen() && now >= nextOpening) {
            nextOpening = now + kReopenEvery;
            const QString fault = openIfThere();
            if (fault != std::exchange(lastFault, fault) && !fault.isEmpty() && notOpened)
                notOpened(fault);
        }
        const auto received = receiveOrClose();
        if (!received) {
            isOldBoard = false;
            together.clear();
        }
        const QByteArray heard = received.value_or(QByteArray());
        if (!heard.isEmpty()) {
            isOldBoard = isOldBoard && now - heardLast < kAway;
            if (now - heardLast >= kApart)
                together.clear();
            together += heard;
            heardLast = now;
        }
        const bool isAlone = now - heardLast >= kApart || together.size() >= kEnoughTogether;
        if (isAlone && !together.isEmpty() && together.count(kAnnouncement) == together.size()) {
            if (!isOldBoard)
                return Operation::End::Done;
            if (now - begin >= kUntilRemark && !std::exchange(isRemarked, true))
                stillThere();
            together.clear();
        }
        m_link.loop.wait();
    }
    return Operation::End::Stopped;
}

QString BoardWatch::openIfThere() {
    try {
        m_link.port.OpenComPort();
    } catch (const RuntimeFailure& failure) { // it may come with the next board
        return m_link.state.CancelRequested ? QString() : failure.description();
    }
    return {};
}

std::optional<QByteArray> BoardWatch::receiveOrClose() {
    if (!m_link.port.isOpen())
        return QByteArray();
    try {
        return m_link.port.receive();
    } catch (const RuntimeFailure&) {
        m_link.port.CloseComPort();
        return std::nullopt;
    }
}

} // namespace zrk
