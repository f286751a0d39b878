// CArchive: binary persistence over an abstract byte stream. Words are little-endian whatever the machine is;
// narrow strings carry a length prefix: one byte below 255; else 0xFF and a 16-bit length below 0xFFFE; else
// 0xFF, 0xFFFF and a 32-bit length. Stored: do not change.
//
// An archive either stores or loads for its whole life. Every failure throws CArchiveException (by value) and
// leaves the stream where it was read to: wrong mode, end of data, a stream that refuses to write, and a
// string whose length is more than what is left or whose prefix announces wide characters (0xFF, 0xFFFE).
// Thread: one archive belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

// Why an archive's operation failed. `what` is kept, not copied: a text that stays.
class BRINDLE_API CArchiveException : public std::exception {
  public:
    enum Cause { none, genericException, readOnly, endOfFile, writeOnly, badIndex, badClass, badSchema };

    CArchiveException(Cause cause, const char* what) noexcept : m_cause(cause), m_what(what) {}
    ~CArchiveException() override;
    const char* what() const noexcept override { return m_what; }

    Cause m_cause;

  private:
    const char* m_what;  // static text
};

// Where an archive's bytes come from or go to. Owned by whoever creates it; must outlive the archive.
class BRINDLE_API CArchiveStream {
  public:
    virtual ~CArchiveStream();
    // Up to count bytes; the number read, 0 only at the end.
    virtual std::size_t Read(void* bytes, std::size_t count) = 0;
    // All count bytes, or false.
    virtual bool Write(const void* bytes, std::size_t count) = 0;
    // Bytes that can still be read: an upper bound for announced lengths.
    virtual std::uint64_t Left() const = 0;
};

// A stream over bytes in memory: writes append, reads consume from the front.
class BRINDLE_API CArchiveMemoryStream final : public CArchiveStream {
  public:
    CArchiveMemoryStream() = default;
    explicit CArchiveMemoryStream(std::string bytes) : m_bytes(std::move(bytes)) {}
    ~CArchiveMemoryStream() override;
    std::size_t Read(void* bytes, std::size_t count) override;
    bool Write(const void* bytes, std::size_t count) override;
    std::uint64_t Left() const override { return m_bytes.size() - m_read; }
    const std::string& bytes() const noexcept { return m_bytes; }

  private:
    std::string m_bytes;
    std::size_t m_read = 0;
};

class BRINDLE_API CArchive {
  public:
    enum Mode { store = 0, load = 1 };

    CArchive(CArchiveStream& stream, Mode mode) noexcept : m_stream(stream), m_mode(mode) {}
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    bool IsStoring() const noexcept { return m_mode == store; }
    bool IsLoading() const noexcept { return m_mode == load; }

    // Writes the value.
    CArchive& operator<<(std::uint8_t value);
    CArchive& operator<<(std::uint16_t value);
    CArchive& operator<<(std::uint32_t value);
    CArchive& operator<<(const CStringA& text);
    // Reads the value; unchanged when that fails.
    CArchive& operator>>(std::uint8_t& value);
    CArchive& operator>>(std::uint16_t& value);
    CArchive& operator>>(std::uint32_t& value);
    CArchive& operator>>(CStringA& text);  // unchanged when loading fails

    // Raw bytes: Read returns how many there were, Write all or throws.
    std::size_t Read(void* bytes, std::size_t count);
    void Write(const void* bytes, std::size_t count);

  private:
    void ReadExactly(void* bytes, std::size_t count);
    std::uint64_t ReadStringLength();

    CArchiveStream& m_stream;
    Mode m_mode;
};
