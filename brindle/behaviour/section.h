// Section: one entered section of a reader or writer, closed when the block is left, also by an exception of
// the host's code; what that code has left open inside is closed too. Internal.
#pragma once

#include <cstddef>

#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"

namespace brindle {

class ReadSection {
  public:
    // Enters the next child section of that name, continuing from the reader's position.
    ReadSection(XMLReader& reader, const char* name)
        : m_reader(reader), m_depth(reader.Depth()), m_entered(reader.EnterSection(name, false)) {}
    ReadSection(const ReadSection&) = delete;
    ReadSection& operator=(const ReadSection&) = delete;
    ~ReadSection() {
        while (m_reader.Depth() > m_depth) m_reader.CloseSection();
    }
    explicit operator bool() const noexcept { return m_entered; }

  private:
    XMLReader& m_reader;
    std::size_t m_depth;
    bool m_entered;
};

class WriteSection {
  public:
    WriteSection(XMLWriter& writer, const char* name) : m_writer(writer), m_depth(writer.Depth()) {
        writer.EnterSection(name);
    }
    WriteSection(const WriteSection&) = delete;
    WriteSection& operator=(const WriteSection&) = delete;
    ~WriteSection() {
        while (m_writer.Depth() > m_depth) m_writer.CloseSection();
    }

  private:
    XMLWriter& m_writer;
    std::size_t m_depth;
};

}  // namespace brindle
