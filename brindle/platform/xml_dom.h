// XmlDom: XML documents as trees, read from bytes or built node by node. A private service: XMLReader and
// XMLWriter are the doors to it.
//
// A document owns all of its nodes. A node is named by a plain pointer without a count, valid as long as its
// document lives and is not parsed again; a pointer of another document must not be passed in. Inside
// everything is UTF-8; the ANSI code page is the business of the callers. Files are read and written by the
// callers too: a backend sees bytes only.
//
// Reading keeps white space, turns line ends into LF, expands internal entities and nothing else: no default
// attributes, no external entity, no external DTD, no network, no validation. An external entity reads as the
// empty text. Nothing is printed. Every failure of a parse leaves the document empty.
// Thread: any thread may create documents; a document belongs to one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "brindle/framework/result.h"

struct brindle_xml_node;  // a backend's node, opaque

namespace brindle {

using XmlNode = brindle_xml_node;

// What a parse accepts: more than any of these is ErrorCode::kLimit. (A backend may refuse a single text or
// attribute of more than ten million bytes too.)
constexpr std::size_t kXmlMaxBytes = 16u << 20;  // as given, as UTF-8, and again for what entities expand to
constexpr unsigned kXmlMaxDepth = 256;           // elements inside each other, the root is 1
// Attributes and namespace declarations of one element, defaults included; also the attributes that a
// document type declares in all. Counted before the parse, so that a tag in a comment counts too.
constexpr unsigned kXmlMaxAttributes = 4096;
constexpr unsigned kXmlMaxNamespaces = 256;  // namespace declarations in scope

enum class XmlInput {
    kFile,  // bytes as they lie in a file: byte order mark, else declared encoding, else UTF-8
    kText,  // UTF-8 already, whatever encoding the text declares
};

enum class XmlPositions { kNone, kRecord };

// Line and column of an element's "<", both from 1 (column in bytes of the parsed text as UTF-8); 0: unknown.
// Lines end at LF.
struct XmlPosition {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

// The texts last as long as the visit they are shown in.
struct XmlAttribute {
    std::string_view prefix;  // as written, without its colon; empty: none
    std::string_view localName;
    std::string_view value;
};
using XmlAttributeVisitor = std::function<void(const XmlAttribute&)>;

// The child nodes an element had when the list was made, and a place among them. Children appended later are
// not in the list.
struct XmlChildren {
    XmlNode* first = nullptr;
    XmlNode* next = nullptr;  // null: the list has run out
    XmlNode* last = nullptr;

    void Reset() noexcept { next = first; }
};

// What stands in the place of a text in a copy.
struct XmlReplacement {
    std::string_view from;  // empty: nothing is replaced
    std::string_view to;
};
using XmlReplacements = std::vector<XmlReplacement>;

class XmlDocument {
  public:
    virtual ~XmlDocument() = default;

    // Replaces the content. An error says what and, where known, the line and column.
    virtual Result Parse(std::string_view bytes, XmlInput input, XmlPositions positions) = 0;

    // The first node in document order that the XPath selects from the document, if it is an element. Null
    // otherwise, for an invalid expression too. A namespace prefix in it means what it means at the root.
    virtual XmlNode* SelectSingle(const char* xpath) = 0;
    virtual XmlChildren Children(XmlNode* element) = 0;
    // The next element of the list (other nodes are passed over), or null at its end.
    virtual XmlNode* NextElement(XmlChildren& list) = 0;
    // The next element of that local name.
    virtual XmlNode* NextElement(XmlChildren& list, std::string_view localName) = 0;
    virtual std::string_view LocalName(XmlNode* element) = 0;
    // The attribute of that name as written; its text in `value`, which lies in the document or in
    // `buffer` and lasts as long as both stay unchanged. False, nothing written, when there is none.
    virtual bool FindAttribute(XmlNode* element, std::string_view name, std::string& buffer,
                               std::string_view& value) = 0;
    // Shows all of them in document order, namespace declarations first. The visitor changes nothing.
    virtual void VisitAttributes(XmlNode* element, const XmlAttributeVisitor& visit) = 0;
    // The texts of the element and of its descendants, one after the other.
    virtual std::string Text(XmlNode* element) = 0;
    // Where the element stood in the source; zeros when positions were not recorded or it was built. An
    // element out of an entity's text stands where the nearest element around it stands.
    virtual XmlPosition Position(XmlNode* element) = 0;

    // Building. A null parent is the document itself. Names and texts are taken as given; null or false when
    // the backend cannot make the node (an empty name); memory running out is std::bad_alloc.
    virtual XmlNode* AppendElement(XmlNode* parent, const char* name) = 0;
    virtual bool AppendText(XmlNode* parent, const char* text) = 0;
    virtual bool AppendComment(XmlNode* parent, const char* text) = 0;
    // Target "xml" on the empty document is the declaration <?xml version="1.0"?>, whatever `data` is;
    // anywhere else it is refused.
    virtual bool AppendInstruction(XmlNode* parent, const char* target, const char* data) = 0;
    // Adds the attribute, or replaces the one of that name.
    virtual bool SetAttribute(XmlNode* element, const char* name, const char* value) = 0;

    // Appends a copy of an element with everything in it; it may stand in another document of the same backend,
    // but not around `parent`. The copy declares the namespaces it needs. In attribute values, texts and
    // comments each `from` becomes its `to`, from left to right (at one place the first of the list); what was
    // put in is not searched again. No replacement ends a comment or a CDATA section early: "--" becomes
    // "- -", and a section with "]]>" becomes a text. Null when `source` is of another backend.
    virtual XmlNode* AppendCopy(XmlNode* parent, XmlDocument& source, XmlNode* element,
                                const XmlReplacements& replacements) = 0;

    // The markup of an element with everything in it, and of the whole document with its declaration, in
    // UTF-8. The nodes exactly as they are: nothing between them, "<", ">" and "&" escaped, in attributes
    // also the double quote and line ends. Fails, `utf8` unchanged, when a text holds what XML cannot hold: a
    // control character other than tab, LF and CR, a surrogate, U+FFFE, U+FFFF, or bytes that are not UTF-8.
    virtual Result Markup(XmlNode* element, std::string& utf8) = 0;
    virtual Result DocumentMarkup(std::string& utf8) = 0;
};

class XmlDom {
  public:
    // A new, empty document; null when the backend cannot create one.
    virtual std::shared_ptr<XmlDocument> CreateDocument() = 0;

  protected:
    ~XmlDom() = default;  // never destroyed through this interface
};

// What the linked backend provides.
XmlDom& BackendXmlDom() noexcept;

XmlDom& CurrentXmlDom() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
XmlDom* SetXmlDom(XmlDom* service) noexcept;

}  // namespace brindle
