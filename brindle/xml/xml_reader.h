// XMLReader: a whole XML document and a section cursor over it.
//
// The cursor is a stack of entered elements ("sections"); only the innermost, the current section, is read
// from. Persistent objects read their attributes from the current section, enter named children, read them
// and close them again, so that nested objects load themselves without knowing where in the document they
// stand:
//
//     XMLReader reader;
//     CStringA unused;
//     if (!reader.Load(path, unused) || !reader.EnterSection("BehaviourList", true)) return false;
//     while (reader.EnterSection("Behaviour", false)) {
//         reader.ReadAttribute("Name", name);
//         reader.CloseSection();
//     }
//     reader.CloseSection();
//
// Texts: narrow strings are bytes in the ANSI code page (platform/code_page.h); a character without a byte
// there reads as "?". A null name or text reads as the empty text. Failure: nothing throws except memory
// running out (std::bad_alloc); after that in a load the document is empty or the one before, in any other operation
// the cursor and the document are as they were. With no section open every read fails and leaves its output
// unchanged unless its comment says otherwise. Limits: a document over 16 MiB, deeper than 256 elements or with
// more than 4,096 attributes in one element is refused as a whole. No external entity, external DTD or network address
// is ever opened. Thread: a reader and the readers copied from it (they share the document) belong to one
// thread at a time. GetAttributeNames shares its result across all readers of the process, so it belongs to
// the user-interface thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/result.h"
#include "brindle/framework/string_a.h"

struct brindle_xml_node;
namespace brindle {
class XmlDocument;
}

// An attribute as it is read.
struct XMLAttribute {
    CStringA name;
    CStringA value;
};

class BRINDLE_API XMLReader {
  public:
    XMLReader();
    // A copy shares the document: an edit through one is seen through the other. Copying a reader with open
    // sections is not supported (it is harmless, but the copies then share the cursor positions).
    XMLReader(const XMLReader& other);
    XMLReader& operator=(const XMLReader& other);
    // Closes all open sections, innermost first, and releases the document.
    virtual ~XMLReader();

    // Loads the file at a host path; the bytes say their own encoding (byte order mark, declaration, else
    // UTF-8). True when the whole file is well-formed and within the limits. A null or empty path fails at
    // once and changes nothing; any other failure leaves an empty document. `error` is never written.
    // Sections entered before stay open in their earlier document: load a reader once, before any section is
    // entered.
    bool Load(char const* path, CStringA& error);
    // The same from a text, which is in the ANSI code page whatever encoding it declares.
    bool LoadFromString(char const* text, CStringA& error);
    // The same two for tools: `result` says what is wrong and where (line and column from 1, column in
    // bytes of the text as UTF-8), and GetPosition works afterwards. Slower than the plain loads.
    bool LoadPositioned(char const* path, brindle::Result& result);
    bool LoadFromStringPositioned(char const* text, brindle::Result& result);

    // With no section open: `name` is an XPath from the document, so that a plain name finds the root element
    // of that name. False when nothing matches, the expression is invalid, its first node is not an element,
    // or no document is loaded. With a section open: walks on in the current section's child elements from
    // where the last call stopped (from the first when `fromStart`) to the first whose local name equals
    // `name`, case-sensitive. False when there is none: the position is then at the end and the cursor where
    // it was. The children are those the section had when it was entered.
    bool EnterSection(char const* name, bool fromStart);
    // Leaves the current section; nothing happens when none is open.
    void CloseSection();
    // How many sections are open.
    std::size_t Depth() const noexcept { return m_sections.size(); }
    // The local names of the current section's child elements in document order, as they were when it was
    // entered; an empty list when none is open. Valid until the section is closed. Built when first asked
    // for.
    const std::vector<CStringA>& GetChildSections() const;
    // The local names of the current element's attributes in document order, empty when no section is open.
    // One list shared by all readers: valid until the next call on any reader; copy it to keep it.
    const std::vector<CStringA>& GetAttributeNames() const;
    // Names and texts of the current element's attributes in document order, those with a prefix left out: what
    // GetAttributeNames and ReadAttribute say together, in one pass over the element. `attributes` is emptied
    // first (its storage is used again).
    void ReadAttributes(std::vector<XMLAttribute>& attributes) const;

    // Each returns whether the current element has the attribute (by its name as written, prefix included) in
    // a readable form.
    bool ReadAttribute(char const* name, std::string& value) const;  // absent: false, value unchanged
    bool ReadAttribute(char const* name, CStringA& value) const;     // absent: false, value emptied
    // Decimal: white space, a sign, digits; the rest is ignored; no digits give 0; saturates at 32 bits. An
    // absent or empty attribute: false, value unchanged.
    bool ReadAttribute(char const* name, int& value) const;
    bool ReadAttribute(char const* name, long& value) const;
    // "TRUE", "1", "ON" or "FALSE", "0", "OFF" in any case; anything else: false, value unchanged.
    bool ReadAttribute(char const* name, bool& value) const;

    // The text of the current element and all its descendants, line ends as LF; empty when no section is
    // open.
    std::string ReadData() const;
    // The markup of the current element with everything in it. The first form leaves `xml` unchanged on
    // failure, the second always assigns it (empty when nothing was read).
    void ReadXML(std::string& xml) const;
    void ReadXML(CStringA& xml) const;

    // Appends a new child element to the current section's element and enters it. Nothing happens when no
    // section is open or the name cannot be an element's name.
    void CreateSection(char const* name);
    // Adds or replaces an attribute of the current element; false when no section is open or it is refused.
    bool WriteAttribute(char const* name, CStringA& value);
    // Not for real values: it ignores `value`, writes the text "150" and returns false.
    bool WriteAttribute(char const* name, int& value);

    // Where the current section's element begins in its source (line and column of its "<", from 1, column in
    // bytes of the text as UTF-8); an element created here, or out of an entity, stands where the one around
    // it does. False, outputs unchanged, when no section is open or the document was not loaded by a
    // positioned load.
    bool GetPosition(std::uint32_t& line, std::uint32_t& column) const;

  private:
    friend class XMLWriter;
    struct Section;

    // The current section's element and its document; nulls when none is open.
    std::pair<brindle::XmlDocument*, brindle_xml_node*> CurrentElement() const noexcept;

    brindle::Result LoadFile(char const* path, bool positions);
    brindle::Result LoadText(char const* text, bool positions);
    Section* Current() const noexcept { return m_sections.empty() ? nullptr : m_sections.back().get(); }
    // The attribute's text in UTF-8, where it lies or in `buffer`. False when absent or no section is open.
    bool FindAttribute(char const* name, std::string& buffer, std::string_view& value) const;
    // What Push needs, so that it cannot fail.
    std::shared_ptr<Section> MakeRoom();
    void Push(std::shared_ptr<Section> section, const std::shared_ptr<brindle::XmlDocument>& document,
              brindle_xml_node* element) noexcept;

    std::shared_ptr<brindle::XmlDocument> m_document;
    std::vector<std::shared_ptr<Section>> m_sections;
};
