// CArchive: little-endian words and length-prefixed strings over a byte stream. Tests: archive_test.cpp.
#include "brindle/framework/archive.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <cstring>

namespace {

// Markers of the string length prefix. Stored: do not change.
constexpr std::uint8_t kLongLength = 0xFF;
constexpr std::uint16_t kWideText = 0xFFFE;
constexpr std::uint16_t kVeryLongLength = 0xFFFF;

[[noreturn]] void Fail(CArchiveException::Cause cause, const char* what) {
    throw CArchiveException(cause, what);
}

template <std::unsigned_integral Word>
std::array<unsigned char, sizeof(Word)> ToBytes(Word value) noexcept {
    std::array<unsigned char, sizeof(Word)> bytes;
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(value >> (8 * i));
    return bytes;
}

template <std::unsigned_integral Word>
Word FromBytes(const std::array<unsigned char, sizeof(Word)>& bytes) noexcept {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) value |= static_cast<std::uint32_t>(bytes[i]) << (8 * i);
    return static_cast<Word>(value);
}

}  // namespace

CArchiveException::~CArchiveException() = default;

CArchiveStream::~CArchiveStream() = default;

CArchiveMemoryStream::~CArchiveMemoryStream() = default;

std::size_t CArchiveMemoryStream::Read(void* bytes, std::size_t count) {
    const std::size_t taken = std::min(count, m_bytes.size() - m_read);
    if (taken > 0) std::memcpy(bytes, m_bytes.data() + m_read, taken);
    m_read += taken;
    return taken;
}

bool CArchiveMemoryStream::Write(const void* bytes, std::size_t count) {
    if (count > 0) m_bytes.append(static_cast<const char*>(bytes), count);
    return true;
}

std::size_t CArchive::Read(void* bytes, std::size_t count) {
    if (!IsLoading()) Fail(CArchiveException::writeOnly, "archive is storing, not loading");
    std::size_t done = 0;
    while (done < count) {  // a stream may give less than asked for before its end
        const std::size_t got = m_stream.Read(static_cast<unsigned char*>(bytes) + done, count - done);
        if (got == 0) break;
        done += got;
    }
    return done;
}

void CArchive::Write(const void* bytes, std::size_t count) {
    if (!IsStoring()) Fail(CArchiveException::readOnly, "archive is loading, not storing");
    if (!m_stream.Write(bytes, count))
        Fail(CArchiveException::genericException, "archive stream cannot be written");
}

void CArchive::ReadExactly(void* bytes, std::size_t count) {
    if (Read(bytes, count) != count) Fail(CArchiveException::endOfFile, "archive ends too early");
}

CArchive& CArchive::operator<<(std::uint8_t value) {
    Write(&value, sizeof(value));
    return *this;
}

CArchive& CArchive::operator<<(std::uint16_t value) {
    const auto bytes = ToBytes(value);
    Write(bytes.data(), bytes.size());
    return *this;
}

CArchive& CArchive::operator<<(std::uint32_t value) {
    const auto bytes = ToBytes(value);
    Write(bytes.data(), bytes.size());
    return *this;
}

CArchive& CArchive::operator<<(const CStringA& text) {
    const std::size_t length = text.str().size();
    if (length > 0xFFFFFFFFu) Fail(CArchiveException::genericException, "text is too long for an archive");
    if (length < kLongLength) {
        *this << static_cast<std::uint8_t>(length);
    } else if (length < kWideText) {
        *this << kLongLength << static_cast<std::uint16_t>(length);
    } else {
        *this << kLongLength << kVeryLongLength << static_cast<std::uint32_t>(length);
    }
    Write(text.str().data(), length);
    return *this;
}

CArchive& CArchive::operator>>(std::uint8_t& value) {
    ReadExactly(&value, sizeof(value));
    return *this;
}

CArchive& CArchive::operator>>(std::uint16_t& value) {
    std::array<unsigned char, sizeof(value)> bytes;
    ReadExactly(bytes.data(), bytes.size());
    value = FromBytes<std::uint16_t>(bytes);
    return *this;
}

CArchive& CArchive::operator>>(std::uint32_t& value) {
    std::array<unsigned char, sizeof(value)> bytes;
    ReadExactly(bytes.data(), bytes.size());
    value = FromBytes<std::uint32_t>(bytes);
    return *this;
}

std::uint64_t CArchive::ReadStringLength() {
    std::uint8_t byte = 0;
    *this >> byte;
    if (byte < kLongLength) return byte;
    std::uint16_t word = 0;
    *this >> word;
    if (word == kWideText)
        Fail(CArchiveException::badSchema, "archive holds a wide text where a narrow one belongs");
    if (word < kWideText) return word;
    std::uint32_t length = 0;
    *this >> length;
    return length;
}

CArchive& CArchive::operator>>(CStringA& text) {
    const std::uint64_t length = ReadStringLength();
    // An announced length is believed only as far as there are bytes: no memory is taken for more.
    if (length > m_stream.Left()) Fail(CArchiveException::endOfFile, "archive ends inside a text");
    std::string bytes(static_cast<std::size_t>(length), '\0');
    ReadExactly(bytes.data(), bytes.size());
    text = std::move(bytes);
    return *this;
}
