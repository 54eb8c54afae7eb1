#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zrkfuzz {

/// Requires what must hold for every input. Otherwise prints what does not hold and ends the program, which
/// libFuzzer reports as a finding whose input it keeps.
void require(bool holds, const char* what, const QString& detail = {});

/// An input, taken from its front. After its end it reads as zeros and empty texts.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)) {}

    [[nodiscard]] bool isEmpty() const { return m_at >= m_bytes.size(); }
    [[nodiscard]] std::uint8_t byte();
    [[nodiscard]] std::uint32_t word(); ///< least significant byte first
    [[nodiscard]] QByteArray bytes(qsizetype most);
    /// Takes as many bytes as the byte in front of them says.
    [[nodiscard]] QByteArray counted() { return bytes(byte()); }
    /// Takes the text up to and including the next line feed, and returns it without that.
    [[nodiscard]] QByteArray line();
    [[nodiscard]] QByteArray rest() { return bytes(m_bytes.size()); }

  private:
    QByteArray m_bytes;
    qsizetype m_at = 0;
};

/// Splits the bytes into pieces, whose lengths follow from a seed.
[[nodiscard]] std::vector<QByteArray> piecesOf(const QByteArray& bytes, unsigned seed);

} // namespace zrkfuzz
