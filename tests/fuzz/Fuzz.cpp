#include "fuzz/Fuzz.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace zrkfuzz {

void require(bool holds, const char* what, const QString& detail) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s %s\n", what, detail.toUtf8().constData());
    std::abort();
}

std::uint8_t Input::byte() {
    return isEmpty() ? std::uint8_t{0} : static_cast<std::uint8_t>(m_bytes[m_at++]);
}

std::uint32_t Input::word() {
    std::uint32_t value = 0;
    for (unsigned shift = 0; shift < 32; shift += 8)
        value |= static_cast<std::uint32_t>(byte()) << shift;
    return value;
}

QByteArray Input::bytes(qsizetype most) {
    QByteArray taken = m_bytes.mid(m_at, most);
    m_at += taken.size();
    return taken;
}

QByteArray Input::line() {
    const qsizetype end = m_bytes.indexOf('\n', m_at);
    QByteArray taken = bytes(end < 0 ? m_bytes.size() : end - m_at);
    m_at += end < 0 ? 0 : 1;
    return taken;
}

std::vector<QByteArray> piecesOf(const QByteArray& bytes, unsigned seed) {
    constexpr qsizetype kLongest = 7;
    std::minstd_rand random(seed);
    std::vector<QByteArray> pieces;
    for (qsizetype at = 0; at < bytes.size(); at += pieces.back().size())
        pieces.push_back(bytes.mid(at, 1 + static_cast<qsizetype>(random() % kLongest)));
    return pieces;
}

} // namespace zrkfuzz
