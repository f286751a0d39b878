// Section: one entered section of a reader or writer, closed when the block is left, also by an exception of
// the host's code. Internal.
#pragma once

#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"

namespace brindle {

class ReadSection {
  public:
    // Enters the next child section of that name, continuing from the reader's position.
    ReadSection(XMLReader& reader, const char* name)
        : m_reader(reader), m_entered(reader.EnterSection(name, false)) {}
    ReadSection(const ReadSection&) = delete;
    ReadSection& operator=(const ReadSection&) = delete;
    ~ReadSection() {
        if (m_entered) m_reader.CloseSection();
    }
    explicit operator bool() const noexcept { return m_entered; }

  private:
    XMLReader& m_reader;
    bool m_entered;
};

class WriteSection {
  public:
    WriteSection(XMLWriter& writer, const char* name) : m_writer(writer) { writer.EnterSection(name); }
    WriteSection(const WriteSection&) = delete;
    WriteSection& operator=(const WriteSection&) = delete;
    ~WriteSection() { m_writer.CloseSection(); }

  private:
    XMLWriter& m_writer;
};

}  // namespace brindle
