// What every XML DOM backend needs of XML's lexical rules: writing texts, the count of attributes that guards
// a parser, places in a text. Tested by xml_dom_text_test.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "brindle/platform/xml_dom.h"

namespace brindle {

enum class XmlTextKind {
    kText,       // between tags
    kAttribute,  // between double quotes
    kVerbatim,   // names, comments, instructions, CDATA: nothing to escape
};

// Appends UTF-8 text as it stands in markup. False, with `markup` half written, when it holds what XML
// cannot: a control character other than tab, LF and CR, U+FFFE, U+FFFF, or bytes that are not UTF-8.
bool AppendXmlText(std::string_view text, XmlTextKind kind, std::string& markup);

// Whether a text of that kind changes by the replacements (xml_dom.h); `replaced` is then what it becomes, as
// kVerbatim safe inside a comment, else unchanged.
bool ReplaceXmlText(std::string_view text, XmlTextKind kind, const XmlReplacements& replacements,
                    std::string& replaced);

// The offset of the first "<" that may begin a start tag with more than kXmlMaxAttributes attributes; npos if
// there is none. Sound for any text, well-formed or not: a start tag never runs over another "<". Linear, and
// close to the speed of memchr, since a tag with that many attributes is long.
std::size_t FindAttributeFlood(std::string_view markup) noexcept;

// Turns offsets into lines and columns. Cheap when the offsets rise.
class XmlPlaces {
  public:
    explicit XmlPlaces(std::string_view text) noexcept : m_text(text) {}
    XmlPosition At(std::size_t offset) noexcept;

  private:
    std::string_view m_text;
    std::size_t m_lineStart = 0;
    std::size_t m_scanned = 0;  // no further line begins before here
    std::uint32_t m_line = 1;
};

}  // namespace brindle
