// The fake XML DOM's parser: one pass over the text, no recursion. Entry point: ParseFakeXml.
#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "brindle/platform/fake/xml_dom_fake_tree.h"
#include "brindle/platform/utf8.h"
#include "brindle/platform/xml_dom_text.h"

namespace brindle {
namespace {

using Kind = FakeXmlNode::Kind;

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}
bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}
bool IsNameByte(char c) {
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
}

struct Refusal {
    std::size_t offset;
    const char* text;
    ErrorCode code = ErrorCode::kNotWellFormed;
};

class Parser {
  public:
    Parser(std::string_view text, bool recordPlaces, FakeXmlTree& tree)
        : m_text(text), m_recordPlaces(recordPlaces), m_tree(tree), m_open(&tree.top()), m_places(text) {}

    void Run() {
        if (AtWord("<?xml") && m_text.size() > 5 && IsBlank(m_text[5])) ReadDeclaration();
        while (m_at < m_text.size()) ReadOne();
        if (m_open != &m_tree.top()) Refuse("an element is not closed");
        if (!m_hasRoot) Refuse("no element");
    }

  private:
    [[noreturn]] void Refuse(const char* text) const { throw Refusal{m_at, text}; }
    [[noreturn]] void RefuseLimit(const char* text) const { throw Refusal{m_at, text, ErrorCode::kLimit}; }

    bool AtWord(std::string_view word) const { return m_text.substr(m_at).starts_with(word); }
    char Peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    bool Take(std::string_view word) {
        if (!AtWord(word)) return false;
        m_at += word.size();
        return true;
    }
    void Expect(std::string_view word) {
        if (!Take(word)) Refuse("something else was expected here");
    }
    bool SkipBlanks() {
        const std::size_t start = m_at;
        while (IsBlank(Peek())) ++m_at;
        return m_at > start;
    }

    std::string_view TakeUntil(std::string_view end) {
        const std::size_t found = m_text.find(end, m_at);
        if (found == std::string_view::npos) Refuse("the end is missing");
        const std::string_view inside = m_text.substr(m_at, found - m_at);
        m_at = found + end.size();
        return inside;
    }

    std::string TakeName() {
        const std::size_t start = m_at;
        if (!IsNameStart(Peek())) Refuse("a name was expected here");
        while (m_at < m_text.size() && IsNameByte(m_text[m_at])) ++m_at;
        return std::string(m_text.substr(start, m_at - start));
    }

    // Characters as they stand, line ends as LF.
    std::string Plain(std::string_view raw) const {
        std::string checked;
        if (!AppendXmlText(raw, XmlTextKind::kVerbatim, checked)) Refuse("a character XML cannot hold");
        std::string text;
        for (std::size_t i = 0; i < raw.size(); ++i) {
            if (raw[i] == '\r' && i + 1 < raw.size() && raw[i + 1] == '\n') continue;
            text += raw[i] == '\r' ? '\n' : raw[i];
        }
        return text;
    }

    std::string Reference(std::string_view name) const {
        for (const auto& [known, text] :
             {std::pair{"lt", "<"}, {"gt", ">"}, {"amp", "&"}, {"quot", "\""}, {"apos", "'"}})
            if (name == known) return text;
        if (!name.starts_with('#')) Refuse("an entity is not declared");
        name.remove_prefix(1);
        const bool hexadecimal = name.starts_with('x');
        if (hexadecimal) name.remove_prefix(1);
        std::uint32_t number = 0;
        const auto [end, error] =
            std::from_chars(name.data(), name.data() + name.size(), number, hexadecimal ? 16 : 10);
        std::string text;
        if (name.empty() || error != std::errc() || end != name.data() + name.size()) Refuse("no number");
        EncodeUtf8(number, text);
        std::string checked;
        if (number == 0 || number > 0x10FFFF || !AppendXmlText(text, XmlTextKind::kVerbatim, checked))
            Refuse("a reference to no character");
        return text;
    }

    std::string Decoded(std::string_view raw) const {
        std::string text;
        while (!raw.empty()) {
            const std::size_t mark = std::min(raw.find('&'), raw.size());
            text += Plain(raw.substr(0, mark));
            raw.remove_prefix(mark);
            if (raw.empty()) break;
            const std::size_t end = raw.find(';');
            if (end == std::string_view::npos) Refuse("a reference without ;");
            text += Reference(raw.substr(1, end - 1));
            raw.remove_prefix(end + 1);
        }
        return text;
    }

    void ReadDeclaration() {
        m_at += 5;
        const std::string_view inside = TakeUntil("?>");
        if (inside.find("version") == std::string_view::npos) Refuse("a declaration without version");
        m_tree.hasDeclaration = true;
    }

    void ReadOne() {
        if (Peek() != '<') return ReadText();
        if (Take("<!--")) {
            const std::string_view inside = TakeUntil("--");
            Expect(">");
            m_tree.Append(*m_open, Kind::kComment, "", Plain(inside));
        } else if (Take("<![CDATA[")) {
            if (m_open == &m_tree.top()) Refuse("text outside of the root");
            m_tree.Append(*m_open, Kind::kCData, "", Plain(TakeUntil("]]>")));
        } else if (AtWord("<!")) {
            throw Refusal{m_at, "the fake reads no document type", ErrorCode::kUnsupported};
        } else if (Take("<?")) {
            ReadInstruction();
        } else if (Take("</")) {
            if (TakeName() != m_open->name) Refuse("the end of another element");
            SkipBlanks();
            Expect(">");
            m_open = m_open->parent;
            --m_depth;
        } else {
            ReadStartTag();
        }
    }

    void ReadText() {
        const std::size_t end = std::min(m_text.find('<', m_at), m_text.size());
        const std::string_view raw = m_text.substr(m_at, end - m_at);
        if (m_open != &m_tree.top()) {
            if (raw.find("]]>") != std::string_view::npos) Refuse("]]> in a text");
            m_tree.Append(*m_open, Kind::kText, "", Decoded(raw));
        } else if (raw.find_first_not_of(" \t\r\n") != std::string_view::npos) {
            Refuse("text outside of the root");
        }
        m_at = end;
    }

    void ReadInstruction() {
        std::string target = TakeName();
        if (target == "xml") Refuse("a declaration that is not at the start");
        if (!SkipBlanks() && !AtWord("?>")) Refuse("a blank was expected here");
        m_tree.Append(*m_open, Kind::kInstruction, std::move(target), Plain(TakeUntil("?>")));
    }

    void ReadStartTag() {
        const std::size_t start = m_at++;
        const bool isRoot = m_open == &m_tree.top();
        if (isRoot && std::exchange(m_hasRoot, true)) Refuse("a second root");
        FakeXmlNode& element = m_tree.Append(*m_open, Kind::kElement, TakeName(), "");
        if (m_recordPlaces) element.place = m_places.At(start);
        if (++m_depth > kXmlMaxDepth) RefuseLimit("elements nested deeper than 256");
        m_attributeNames.clear();
        bool blank = SkipBlanks();
        while (Peek() != '>' && Peek() != '/') {
            if (!blank) Refuse("a blank was expected here");
            ReadAttribute(element);
            blank = SkipBlanks();
        }
        CheckPrefix(element, element.name);
        for (const auto& attribute : element.attributes) CheckPrefix(element, attribute.name);
        const bool isEmpty = Take("/");
        Expect(">");
        m_open = isEmpty ? m_open : &element;
        if (isEmpty) --m_depth;
    }

    void ReadAttribute(FakeXmlNode& element) {
        std::string name = TakeName();
        if (!m_attributeNames.insert(name).second) Refuse("an attribute twice");
        SkipBlanks();
        Expect("=");
        SkipBlanks();
        const char quote = Peek();
        if (quote != '"' && quote != '\'') Refuse("a quote was expected here");
        ++m_at;
        const std::string_view raw = TakeUntil(std::string_view(&quote, 1));
        if (raw.find('<') != std::string_view::npos) Refuse("< in an attribute");
        std::string blanks(raw);
        for (std::size_t cr; (cr = blanks.find("\r\n")) != std::string::npos;) blanks.erase(cr, 1);
        for (char& c : blanks)
            if (IsBlank(c)) c = ' ';
        element.attributes.push_back({std::move(name), Decoded(blanks)});
        if (element.attributes.size() > kXmlMaxAttributes) RefuseLimit("too many attributes");
    }

    void CheckPrefix(const FakeXmlNode& element, const std::string& name) const {
        const std::size_t colon = name.find(':');
        if (colon == std::string::npos) return;
        const std::string prefix = name.substr(0, colon);
        if (prefix == "xml" || prefix == "xmlns") return;
        for (const FakeXmlNode* node = &element; node; node = node->parent)
            for (const auto& attribute : node->attributes)
                if (attribute.name == "xmlns:" + prefix) return;
        Refuse("a prefix is not declared");
    }

    std::string_view m_text;
    bool m_recordPlaces;
    FakeXmlTree& m_tree;
    FakeXmlNode* m_open;
    XmlPlaces m_places;
    std::size_t m_at = 0;
    unsigned m_depth = 0;
    std::set<std::string> m_attributeNames;  // of the tag being read
    bool m_hasRoot = false;
};

}  // namespace

FakeXmlNode& FakeXmlTree::Append(FakeXmlNode& parent, FakeXmlNode::Kind kind, std::string name,
                                 std::string value) {
    FakeXmlNode& node = m_nodes.emplace_back();
    node.kind = kind;
    node.name = std::move(name);
    node.value = std::move(value);
    node.parent = &parent;
    node.index = parent.children.size();
    parent.children.push_back(&node);
    return node;
}

Result ParseFakeXml(std::string_view utf8, bool recordPlaces, FakeXmlTree& tree) {
    if (utf8.size() > kXmlMaxBytes) return Result::Error(ErrorCode::kLimit, "more than 16 MiB of XML");
    std::size_t offset = FindAttributeFlood(utf8);
    const char* text = "more than 4096 attributes in one element";
    ErrorCode code = ErrorCode::kLimit;
    if (offset == std::string_view::npos) {
        try {
            Parser(utf8, recordPlaces, tree).Run();
            return {};
        } catch (const Refusal& refusal) {
            offset = refusal.offset;
            text = refusal.text;
            code = refusal.code;
        }
    }
    const XmlPosition place = XmlPlaces(utf8).At(offset);
    return Result::Error(code, text, place.line, place.column);
}

}  // namespace brindle
