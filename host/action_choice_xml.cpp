// Editing XML texts in place. Tests: action_choice_file_test.cpp.
#include "host/action_choice_xml.h"

#include <brindle/library/host_text.h>

#include <algorithm>
#include <cstdint>

#include "host/words.h"

namespace brindle::host {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Walks over a text from tag to tag. The elements that are open form a stack, so that no depth of the text matters.
class PieceReader {
  public:
    explicit PieceReader(std::string_view text) : m_text(text) {}

    Result Read(XmlPiece& root) {
        while (m_error.ok() && !m_done) Step();
        if (m_error.ok()) root = std::move(m_root);
        return m_error;
    }

  private:
    void Step() {
        const std::size_t tag = m_text.find('<', m_at);
        if (tag == std::string_view::npos) return Fail("the text ends inside an element");
        m_at = tag;
        const std::string_view rest = m_text.substr(tag);
        if (rest.starts_with("<!--")) return SkipPast("-->", 4);
        if (rest.starts_with("<![CDATA[")) return SkipPast("]]>", 9);
        if (rest.starts_with("<?")) return SkipPast("?>", 2);
        if (rest.starts_with("<!")) return Fail("it has a document type");
        if (rest.starts_with("</")) return Close();
        Open();
    }
    void Fail(const char* why) { m_error = Result::Error(ErrorCode::kUnsupported, why); }
    void SkipPast(std::string_view end, std::size_t from) {
        const std::size_t found = m_text.find(end, m_at + from);
        if (found == std::string_view::npos) return Fail("the text ends inside an element");
        m_at = found + end.size();
    }
    void SkipBlanks() { m_at = std::min(m_text.find_first_not_of(kBlanks, m_at), m_text.size()); }
    void Open() {
        XmlPiece piece;
        piece.begin = m_at;
        piece.nameBegin = m_at + 1;
        piece.nameEnd = std::min(m_text.find_first_of(" \t\r\n/>", piece.nameBegin), m_text.size());
        const std::string_view name = m_text.substr(piece.nameBegin, piece.nameEnd - piece.nameBegin);
        piece.name = name.substr(name.find(':') + 1);  // npos + 1: the whole
        m_at = piece.nameEnd;
        ReadAttributes(piece);
        if (!m_error.ok()) return;
        piece.isEmpty = m_text[m_at] == '/';
        m_at += piece.isEmpty ? 2 : 1;
        piece.contentBegin = piece.contentEnd = piece.end = m_at;
        const bool whole = piece.isEmpty;
        m_open.push_back(std::move(piece));
        if (whole) Finish();
    }
    void ReadAttributes(XmlPiece& piece) {
        for (SkipBlanks(); m_at < m_text.size() && m_text[m_at] != '>' && m_text[m_at] != '/'; SkipBlanks()) {
            const std::size_t name = m_at;
            const std::size_t quote = m_text.find_first_of("\"'", name);
            const std::size_t end =
                quote == std::string_view::npos ? quote : m_text.find(m_text[quote], quote + 1);
            if (end == std::string_view::npos) return Fail("the text ends inside an element");
            const std::size_t nameEnd = m_text.find_first_of(" \t\r\n=", name);
            piece.attributes.push_back({std::string(m_text.substr(name, nameEnd - name)), quote + 1, end});
            m_at = end + 1;
        }
        if (m_at + 1 >= m_text.size() && (m_at >= m_text.size() || m_text[m_at] != '>'))
            Fail("the text ends inside an element");
    }
    void Close() {
        if (m_open.empty()) return Fail("an element ends that is not open");
        m_open.back().contentEnd = m_at;
        SkipPast(">", 2);
        m_open.back().end = m_at;
        Finish();
    }
    void Finish() {
        XmlPiece piece = std::move(m_open.back());
        m_open.pop_back();
        m_done = m_open.empty();
        if (m_done)
            m_root = std::move(piece);
        else
            m_open.back().children.push_back(std::move(piece));
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::vector<XmlPiece> m_open;
    XmlPiece m_root;
    Result m_error;
    bool m_done = false;
};

}  // namespace

const XmlPiece::Attribute* XmlPiece::Find(std::string_view attribute) const noexcept {
    const auto same = [&](const Attribute& candidate) { return candidate.name == attribute; };
    const auto found = std::find_if(attributes.begin(), attributes.end(), same);
    return found == attributes.end() ? nullptr : &*found;
}

const XmlPiece* XmlPiece::Child(std::string_view child, std::size_t from) const noexcept {
    for (std::size_t i = from; i < children.size(); ++i)
        if (children[i].name == child) return &children[i];
    return nullptr;
}

Result FindXmlPieces(std::string_view text, XmlPiece& root) {
    return PieceReader(text).Read(root);
}

std::string ToMarkup(std::string_view text, bool quoted) {
    const std::string utf8 = TextToSystem(text);
    std::string markup;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        std::uint32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
        for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k)
            character = character << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        i += length;
        const bool special = character == '<' || character == '&' || character == '>' || character == '"';
        const bool escape = character >= 0x7F || (quoted && (special || character < ' '));
        if (character == '&' && escape)
            markup += "&amp;";
        else if (character == '<' && escape)
            markup += "&lt;";
        else if (character == '>' && escape)
            markup += "&gt;";
        else if (character == '"' && escape)
            markup += "&quot;";
        else if (escape)
            markup += "&#" + std::to_string(character) + ";";
        else
            markup += static_cast<char>(character);
    }
    return markup;
}

void XmlEdit::SetAttribute(const XmlPiece& piece, std::string_view name, std::string_view value) {
    const std::string markup = Replaced(ToMarkup(value, true), "'", "&apos;");
    if (const XmlPiece::Attribute* attribute = piece.Find(name)) {
        m_splices.push_back({attribute->begin, attribute->end, markup});
        return;
    }
    const std::size_t behind = piece.attributes.empty() ? piece.nameEnd : piece.attributes.back().end + 1;
    m_splices.push_back({behind, behind, " " + std::string(name) + "=\"" + markup + "\""});
}

// The line break and the blanks before a place, when nothing else stands before it on its line.
std::string XmlEdit::IndentAt(std::size_t place) const {
    std::size_t begin = place;
    while (begin > 0 && (m_text[begin - 1] == ' ' || m_text[begin - 1] == '\t')) --begin;
    if (begin == 0 || m_text[begin - 1] != '\n') return {};
    const std::size_t line = begin >= 2 && m_text[begin - 2] == '\r' ? begin - 2 : begin - 1;
    return std::string(m_text.substr(line, place - line));
}

// What stands before a new child of an element: as before its other children, else one step further in than itself.
std::string XmlEdit::Separator(const XmlPiece& parent) const {
    if (!parent.children.empty()) return IndentAt(parent.children.front().begin);
    const std::string own = IndentAt(parent.begin);
    return own.empty() ? own : own + "  ";
}

void XmlEdit::Insert(const XmlPiece& parent, const XmlPiece* behind, const std::string& markup) {
    const std::string separator = Separator(parent);
    if (behind) {
        m_splices.push_back({behind->end, behind->end, separator + markup});
        return;
    }
    const bool childless = parent.children.empty();
    const std::string close = childless ? IndentAt(parent.begin) : std::string();
    if (!parent.isEmpty) {
        const std::string_view content =
            m_text.substr(parent.contentBegin, parent.contentEnd - parent.contentBegin);
        const bool hasLine = content.find('\n') != std::string_view::npos;
        m_splices.push_back(
            {parent.contentBegin, parent.contentBegin, separator + markup + (hasLine ? "" : close)});
        return;
    }
    const std::string name(m_text.substr(parent.nameBegin, parent.nameEnd - parent.nameBegin));
    // Several go into one place: the tag is opened once.
    const std::size_t slash = parent.contentBegin - 2;
    const auto same = [&](const Splice& splice) { return splice.begin == slash && splice.end == slash + 2; };
    const auto opened = std::find_if(m_splices.begin(), m_splices.end(), same);
    const std::string end = close + "</" + name + ">";
    if (opened == m_splices.end())
        m_splices.push_back({slash, slash + 2, ">" + separator + markup + end});
    else
        opened->text.insert(opened->text.size() - end.size(), separator + markup);
}

void XmlEdit::Remove(const XmlPiece& piece) {
    std::size_t begin = piece.begin;
    std::size_t end = piece.end;
    const std::string indent = IndentAt(piece.begin);
    const std::size_t next = m_text.find_first_not_of(" \t\r", piece.end);
    if (!indent.empty() && next != std::string_view::npos && m_text[next] == '\n') {
        begin -= indent.size();
        // The line break before it goes; that behind it stays.
        end = m_text[next - 1] == '\r' ? next - 1 : next;
    }
    m_splices.push_back({begin, end, {}});
}

std::string XmlEdit::Text() const {
    std::vector<Splice> splices = m_splices;
    std::stable_sort(splices.begin(), splices.end(), [](const Splice& a, const Splice& b) {
        return a.begin != b.begin ? a.begin < b.begin : a.end < b.end;
    });
    std::string text;
    std::size_t at = 0;
    for (const Splice& splice : splices) {
        text += m_text.substr(at, splice.begin - at);
        text += splice.text;
        at = splice.end;
    }
    text += m_text.substr(at);
    return text;
}

}  // namespace brindle::host
