// ByteReader: numbers out of bytes from left to right. Reading beyond the end gives 0 and is remembered: a caller reads
// a whole record and asks once. Internal; plain value.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace brindle {

class ByteReader {
  public:
    explicit ByteReader(std::string_view bytes, std::size_t position = 0) noexcept
        : m_bytes(bytes), m_position(position), m_ok(position <= bytes.size()) {}

    // Nothing beyond the end was asked for so far.
    bool ok() const noexcept { return m_ok; }
    bool AtEnd() const noexcept { return m_position >= m_bytes.size(); }
    std::size_t Position() const noexcept { return m_position; }

    void Skip(std::size_t count) noexcept { Take(count); }
    std::uint8_t Byte() noexcept { return static_cast<std::uint8_t>(Little(1)); }
    std::uint16_t Little16() noexcept { return static_cast<std::uint16_t>(Little(2)); }
    std::uint32_t Little32() noexcept { return Little(4); }
    std::uint16_t Big16() noexcept { return static_cast<std::uint16_t>(Big(2)); }
    std::uint32_t Big32() noexcept { return Big(4); }
    // Empty when there are not so many.
    std::string_view Take(std::size_t count) noexcept {
        if (!m_ok || m_bytes.size() - m_position < count) {
            m_ok = false;
            return {};
        }
        const std::string_view taken = m_bytes.substr(m_position, count);
        m_position += count;
        return taken;
    }

  private:
    std::uint32_t Big(std::size_t count) noexcept {
        std::uint32_t value = 0;
        for (const char byte : Take(count)) value = value << 8 | static_cast<std::uint8_t>(byte);
        return value;
    }
    std::uint32_t Little(std::size_t count) noexcept {
        std::uint32_t value = 0;
        int shift = 0;
        for (const char byte : Take(count)) {
            value |= std::uint32_t{static_cast<std::uint8_t>(byte)} << shift;
            shift += 8;
        }
        return value;
    }

    std::string_view m_bytes;
    std::size_t m_position;
    bool m_ok;
};

}  // namespace brindle
