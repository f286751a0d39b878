// CArchive: words, strings and every way to fail.
#include "brindle/framework/archive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>

namespace {

using namespace std::string_literals;

std::string Stored(const std::function<void(CArchive&)>& write) {
    CArchiveMemoryStream stream;
    CArchive archive(stream, CArchive::store);
    EXPECT_TRUE(archive.IsStoring());
    EXPECT_FALSE(archive.IsLoading());
    write(archive);
    return stream.bytes();
}

TEST(Archive, WordsAreLittleEndian) {
    struct Row {
        const char* label;
        std::function<void(CArchive&)> write;
        std::string bytes;
    };
    const Row rows[] = {
        {"byte", [](CArchive& a) { a << std::uint8_t{0xAB}; }, "\xAB"},
        {"16 bits", [](CArchive& a) { a << std::uint16_t{0xABCD}; }, "\xCD\xAB"},
        {"32 bits", [](CArchive& a) { a << std::uint32_t{0x89ABCDEF}; }, "\xEF\xCD\xAB\x89"},
        {"several", [](CArchive& a) { a << std::uint8_t{1} << std::uint16_t{2} << std::uint32_t{3}; },
         "\x01\x02\0\x03\0\0\0"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Stored(row.write), row.bytes);
    }
    CArchiveMemoryStream stream("\xAB\xCD\xAB\xEF\xCD\xAB\x89"s);
    CArchive archive(stream, CArchive::load);
    EXPECT_TRUE(archive.IsLoading());
    EXPECT_FALSE(archive.IsStoring());
    std::uint8_t byte = 0;
    std::uint16_t word = 0;
    std::uint32_t doubleWord = 0;
    archive >> byte >> word >> doubleWord;
    EXPECT_EQ(byte, 0xAB);
    EXPECT_EQ(word, 0xABCD);
    EXPECT_EQ(doubleWord, 0x89ABCDEF);
    EXPECT_EQ(stream.Left(), 0u);
}

TEST(Archive, StringLengthForms) {
    struct Row {
        std::size_t length;
        std::string prefix;
    };
    const Row rows[] = {
        {0, "\0"s},
        {1, "\x01"},
        {254, "\xFE"},
        {255, "\xFF\xFF\0"s},
        {256, "\xFF\0\x01"s},
        {0xFFFD, "\xFF\xFD\xFF"},
        {0xFFFE, "\xFF\xFF\xFF\xFE\xFF\0\0"s},
        {0xFFFF, "\xFF\xFF\xFF\xFF\xFF\0\0"s},
        {0x10000, "\xFF\xFF\xFF\0\0\x01\0"s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.length);
        const std::string text(row.length, 'x');
        const std::string bytes = Stored([&](CArchive& a) { a << CStringA(text); });
        EXPECT_TRUE(bytes == row.prefix + text) << ::testing::PrintToString(bytes.substr(0, 8));
        CArchiveMemoryStream stream(bytes);
        CArchive archive(stream, CArchive::load);
        CStringA loaded("before");
        archive >> loaded;
        EXPECT_TRUE(loaded == text);
        EXPECT_EQ(stream.Left(), 0u);
    }
}

TEST(Archive, StringsKeepZeroBytesAndLongFormsOfShortLengthsLoad) {
    struct Row {
        const char* label;
        std::string bytes;
        std::string text;
    };
    const Row rows[] = {
        {"zero bytes",
         "\x03"
         "a\0b"s,
         "a\0b"s},
        {"16-bit form of a short length", "\xFF\x02\0ab"s, "ab"},
        {"32-bit form of a short length", "\xFF\xFF\xFF\x02\0\0\0ab"s, "ab"},
        {"high bytes", "\x02\xE9\xFF"s, "\xE9\xFF"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CArchiveMemoryStream stream(row.bytes);
        CArchive archive(stream, CArchive::load);
        CStringA loaded;
        archive >> loaded;
        EXPECT_EQ(loaded.str(), row.text);
    }
    EXPECT_EQ(Stored([](CArchive& a) { a << CStringA("a\0b", 3); }),
              "\x03"
              "a\0b"s);
}

// A stream that takes or gives only so many bytes, and never more than one at a time.
class NarrowStream : public CArchiveStream {
  public:
    NarrowStream(std::string bytes, std::size_t room) : m_bytes(std::move(bytes)), m_room(room) {}
    std::size_t Read(void* bytes, std::size_t count) override {
        if (count == 0 || m_read == m_bytes.size()) return 0;
        *static_cast<char*>(bytes) = m_bytes[m_read++];
        return 1;
    }
    bool Write(const void*, std::size_t count) override {
        if (count > m_room) return false;
        m_room -= count;
        return true;
    }
    std::uint64_t Left() const override { return m_bytes.size() - m_read; }

  private:
    std::string m_bytes;
    std::size_t m_read = 0;
    std::size_t m_room;
};

TEST(Archive, Failures) {
    struct Row {
        const char* label;
        CArchive::Mode mode;
        std::string bytes;
        std::function<void(CArchive&)> use;
        CArchiveException::Cause cause;
    };
    static std::uint8_t byte;
    static std::uint16_t word;
    static std::uint32_t doubleWord;
    static CStringA text;
    const auto readByte = [](CArchive& a) { a >> byte; };
    const auto readWord = [](CArchive& a) { a >> word; };
    const auto readDoubleWord = [](CArchive& a) { a >> doubleWord; };
    const auto readText = [](CArchive& a) { a >> text; };
    using E = CArchiveException;
    const Row rows[] = {
        {"reading a byte while storing", CArchive::store, "", readByte, E::writeOnly},
        {"reading a word while storing", CArchive::store, "", readWord, E::writeOnly},
        {"reading 32 bits while storing", CArchive::store, "", readDoubleWord, E::writeOnly},
        {"reading a text while storing", CArchive::store, "", readText, E::writeOnly},
        {"reading raw bytes while storing", CArchive::store, "", [](CArchive& a) { a.Read(&byte, 1); },
         E::writeOnly},
        {"writing a byte while loading", CArchive::load, "", [](CArchive& a) { a << std::uint8_t{1}; },
         E::readOnly},
        {"writing a word while loading", CArchive::load, "", [](CArchive& a) { a << std::uint16_t{1}; },
         E::readOnly},
        {"writing 32 bits while loading", CArchive::load, "", [](CArchive& a) { a << std::uint32_t{1}; },
         E::readOnly},
        {"writing a text while loading", CArchive::load, "", [](CArchive& a) { a << CStringA("a"); },
         E::readOnly},
        {"writing raw bytes while loading", CArchive::load, "", [](CArchive& a) { a.Write("a", 1); },
         E::readOnly},
        {"no byte left", CArchive::load, "", readByte, E::endOfFile},
        {"half a word", CArchive::load, "\x01", readWord, E::endOfFile},
        {"three bytes of 32 bits", CArchive::load, "\x01\x02\x03", readDoubleWord, E::endOfFile},
        {"text without a length", CArchive::load, "", readText, E::endOfFile},
        {"text cut", CArchive::load,
         "\x03"
         "ab",
         readText, E::endOfFile},
        {"16-bit length cut", CArchive::load, "\xFF\x01", readText, E::endOfFile},
        {"16-bit length of too much", CArchive::load, "\xFF\xFD\xFFxxx", readText, E::endOfFile},
        {"32-bit length cut", CArchive::load, "\xFF\xFF\xFF\x01\0\0"s, readText, E::endOfFile},
        {"largest length", CArchive::load, "\xFF\xFF\xFF\xFF\xFF\xFF\xFFxxx", readText, E::endOfFile},
        {"wide text", CArchive::load,
         "\xFF\xFE\xFF\x01"
         "a\0"s,
         readText, E::badSchema},
        {"no room for a byte", CArchive::store, "", [](CArchive& a) { a << std::uint8_t{1}; },
         E::genericException},
        {"no room for a text", CArchive::store, "", [](CArchive& a) { a << CStringA("abc"); },
         E::genericException},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        NarrowStream stream(row.bytes, 0);
        CArchive archive(stream, row.mode);
        text = "before";
        try {
            row.use(archive);
            ADD_FAILURE() << "no exception";
        } catch (const CArchiveException& error) {
            EXPECT_EQ(error.m_cause, row.cause);
            EXPECT_STRNE(error.what(), "");
        }
        EXPECT_EQ(text, "before") << "unchanged when loading fails";
    }
}

TEST(Archive, ALengthIsBoundedByWhatIsLeft) {
    struct Row {
        const char* label;
        std::string prefix;
    };
    for (const Row& row :
         {Row{"one byte", "\x04"}, Row{"16 bits", "\xFF\x04\0"s}, Row{"32 bits", "\xFF\xFF\xFF\x04\0\0\0"s},
          Row{"4 GiB", "\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s}}) {
        SCOPED_TRACE(row.label);
        NarrowStream stream(row.prefix + "xxx", 0);
        CArchive archive(stream, CArchive::load);
        CStringA text;
        EXPECT_THROW(archive >> text, CArchiveException);
        EXPECT_EQ(stream.Left(), 3u) << "refused before anything was read or memory taken";
    }
}

// Announces more than it has, so that only the end of the data can stop the reading.
class LyingStream : public NarrowStream {
  public:
    using NarrowStream::NarrowStream;
    std::uint64_t Left() const override { return 1000; }
};

TEST(Archive, ATextOfAStreamThatEndsEarlyIsAnError) {
    LyingStream stream(
        "\x05"
        "abc",
        0);
    CArchive archive(stream, CArchive::load);
    CStringA text("before");
    EXPECT_THROW(archive >> text, CArchiveException);
    EXPECT_EQ(text, "before");
}

TEST(Archive, RawBytes) {
    NarrowStream source("abcde", 0);
    CArchive archive(source, CArchive::load);
    char bytes[8] = "-------";
    EXPECT_EQ(archive.Read(bytes, 3), 3u) << "a stream may give them one by one";
    EXPECT_EQ(std::string(bytes, 4), "abc-");
    EXPECT_EQ(archive.Read(bytes, 8), 2u) << "what there was";
    EXPECT_EQ(archive.Read(bytes, 8), 0u);
    EXPECT_EQ(archive.Read(nullptr, 0), 0u);
    EXPECT_EQ(Stored([](CArchive& a) { a.Write("a\0b", 3); }), "a\0b"s);
    EXPECT_EQ(Stored([](CArchive& a) { a.Write(nullptr, 0); }), "");
}

TEST(Archive, EveryCutOfAStoredArchiveIsRefused) {
    const auto write = [](CArchive& a) {
        a << std::uint16_t{1} << CStringA("abc") << CStringA(std::string(300, 'x')) << std::uint32_t{2};
    };
    const std::string whole = Stored(write);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        CArchiveMemoryStream stream(whole.substr(0, length));
        CArchive archive(stream, CArchive::load);
        std::uint16_t word = 0;
        std::uint32_t doubleWord = 0;
        CStringA a;
        CStringA b;
        EXPECT_THROW(archive >> word >> a >> b >> doubleWord, CArchiveException) << length;
    }
}

TEST(Archive, MemoryStreamsReadFromTheFrontAndAppend) {
    CArchiveMemoryStream stream("ab");
    EXPECT_EQ(stream.Left(), 2u);
    EXPECT_TRUE(stream.Write("cd", 2));
    EXPECT_EQ(stream.bytes(), "abcd");
    char bytes[8];
    EXPECT_EQ(stream.Read(bytes, 3), 3u);
    EXPECT_EQ(stream.Left(), 1u);
    EXPECT_EQ(stream.Read(bytes, 8), 1u);
    EXPECT_EQ(bytes[0], 'd');
    EXPECT_EQ(stream.Read(bytes, 8), 0u);
}

}  // namespace
