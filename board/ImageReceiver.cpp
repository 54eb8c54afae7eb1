#include "board/ImageReceiver.h"

#include "board/Text.h"

namespace zrkboard {

std::string describe(const ImageHeader& header) {
    return std::to_string(header.size) + " bytes to " + hex(header.address, 8);
}

ImageReceiver::Event ImageReceiver::receive(std::uint8_t byte) {
    if (m_headerBytes < 8) {
        std::uint32_t& field = m_headerBytes < 4 ? m_header.address : m_header.size;
        field |= static_cast<std::uint32_t>(byte) << (8 * (m_headerBytes % 4));
        return ++m_headerBytes == 8 ? Event::HeaderComplete : Event::None;
    }
    m_memory.write(std::uint64_t{m_header.address} + m_codeBytes, std::array{byte});
    ++m_codeBytes;
    return complete() ? Event::ImageComplete : Event::None;
}

} // namespace zrkboard
