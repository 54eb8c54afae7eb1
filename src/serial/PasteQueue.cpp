#include "serial/PasteQueue.h"

#include <utility>

namespace zrk {
namespace {

constexpr char kReturn = '\r';
// The marks around a paste for a program that asked for them.
const QByteArray kPasteBegin = QByteArrayLiteral("\x1B[200~");
const QByteArray kPasteEnd = QByteArrayLiteral("\x1B[201~");

} // namespace

qsizetype pastedLines(const QByteArray& bytes) {
    QByteArray text = bytes;
    if (text.endsWith(kPasteEnd))
        text.chop(kPasteEnd.size());
    return text.count(kReturn) + (text.isEmpty() || text.endsWith(kReturn) ? 0 : 1);
}

void PasteQueue::add(const QByteArray& bytes) {
    if (m_bytes.isEmpty()) {
        m_lines = 0;
        m_linesSent = 0;
        m_isMarked = false;
    }
    m_isMarked = m_isMarked || bytes.contains(kPasteBegin);
    m_lines += pastedLines(bytes);
    m_bytes += bytes;
}

QByteArray PasteQueue::take(qsizetype most, TimePoint now) {
    if (now < m_next)
        return {};
    QByteArray taken = m_bytes.left(most);
    if (m_pause.count() > 0) {
        if (const qsizetype end = taken.indexOf(kReturn); end >= 0) {
            taken.truncate(end + 1);
            m_next = now + m_pause;
        }
    }
    m_bytes.remove(0, taken.size());
    m_linesSent += taken.count(kReturn);
    return taken;
}

QByteArray PasteQueue::stop() {
    const bool isOpen = std::exchange(m_isMarked, false) && !m_bytes.isEmpty();
    m_bytes.clear();
    return isOpen ? kPasteEnd : QByteArray();
}

} // namespace zrk
