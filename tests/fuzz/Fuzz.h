#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zrkfuzz {

/// What must hold for every input. Otherwise says what does not and ends the program, which libFuzzer takes
/// for a finding and keeps the input of.
void require(bool holds, const char* what, const QString& detail = {});

/// An input, taken from its front. Behind its end there are zeros and empty texts.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)) {}

    [[nodiscard]] bool isEmpty() const { return m_at >= m_bytes.size(); }
    [[nodiscard]] std::uint8_t byte();
    [[nodiscard]] std::uint32_t word(); ///< least significant byte first
    [[nodiscard]] QByteArray bytes(qsizetype most);
    /// As many as the byte in front of them says.
    [[nodiscard]] QByteArray counted() { return bytes(byte()); }
    /// Up to the next line feed, which is taken and not returned.
    [[nodiscard]] QByteArray line();
    [[nodiscard]] QByteArray rest() { return bytes(m_bytes.size()); }

  private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};

/// The bytes in pieces, whose lengths follow from a seed.
[[nodiscard]] std::vector<QByteArray> piecesOf(const QByteArray& bytes, unsigned seed);

} // namespace zrkfuzz
