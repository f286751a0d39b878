// XMLReader: loading, the section cursor, reads and edits. The document is the XML DOM service's; what is
// here is the cursor and the way between its UTF-8 and the library's bytes.
//
// A reader walks documents of 100,000 elements, so a section costs no allocation: its record is taken over
// from the last section that was open at its depth, its children are a pair of nodes, its child names wait to
// be asked for.
#include "brindle/xml/xml_reader.h"

#include <cstring>

#include "brindle/framework/number_text.h"
#include "brindle/platform/files.h"
#include "brindle/platform/xml_dom.h"
#include "brindle/xml/xml_bytes.h"

using brindle::AssignBytes;
using brindle::ErrorCode;
using brindle::Result;
using brindle::Utf8View;
using brindle::XmlChildren;
using brindle::XmlDocument;
using brindle::XmlNode;

struct XMLReader::Section {
    std::shared_ptr<XmlDocument> document;  // the reader may have loaded another one since
    XmlNode* element = nullptr;
    XmlChildren children;
    std::vector<CStringA> childNames;
    bool hasChildNames = false;
    std::shared_ptr<Section> spare;  // the record of the last child section, for the next one
};

namespace {

// Records further down are freed at once, so that a chain of spare ones is never long.
constexpr std::size_t kMaxSpareDepth = brindle::kXmlMaxDepth;

Result NoDocument() {
    return Result::Error(ErrorCode::kUnsupported, "no XML document can be created");
}

Result Parse(XmlDocument& document, std::string_view bytes, brindle::XmlInput input, bool positions) {
    const auto wanted = positions ? brindle::XmlPositions::kRecord : brindle::XmlPositions::kNone;
    Result result = document.Parse(bytes, input, wanted);
    if (!result.ok()) result.text = brindle::FromUtf8(result.text);
    return result;
}

// `upper` is in upper case.
bool EqualsNoCase(std::string_view text, std::string_view upper) {
    if (text.size() != upper.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != upper[i]) return false;
    }
    return true;
}

CStringA ToCString(std::string_view utf8) {
    CStringA bytes;
    AssignBytes(utf8, bytes.str());
    return bytes;
}

}  // namespace

XMLReader::XMLReader() = default;
XMLReader::XMLReader(const XMLReader& other) = default;
XMLReader& XMLReader::operator=(const XMLReader& other) = default;

XMLReader::~XMLReader() {
    while (!m_sections.empty()) CloseSection();
}

Result XMLReader::LoadFile(char const* path, bool positions) {
    if (!path || !*path) return Result::Error(ErrorCode::kInvalidArgument, "no path given");
    m_document = brindle::CurrentXmlDom().CreateDocument();
    if (!m_document) return NoDocument();
    std::string bytes;
    Result read = brindle::CurrentFiles().ReadWhole(path, brindle::kXmlMaxBytes, bytes);
    return read.ok() ? Parse(*m_document, bytes, brindle::XmlInput::kFile, positions) : read;
}

Result XMLReader::LoadText(char const* text, bool positions) {
    if (!text) return Result::Error(ErrorCode::kInvalidArgument, "no text given");
    m_document = brindle::CurrentXmlDom().CreateDocument();
    if (!m_document) return NoDocument();
    const std::size_t length = std::strlen(text);
    std::string buffer;
    const std::string_view utf8 =
        length <= brindle::kXmlMaxBytes ? Utf8View(text, buffer) : std::string_view(text, length);
    return Parse(*m_document, utf8, brindle::XmlInput::kText, positions);
}

// Kept: callers show messages of their own, so neither load ever writes its error.
bool XMLReader::Load(char const* path, CStringA& /*error*/) {
    return LoadFile(path, false).ok();
}
bool XMLReader::LoadFromString(char const* text, CStringA& /*error*/) {
    return LoadText(text, false).ok();
}

bool XMLReader::LoadPositioned(char const* path, Result& result) {
    result = LoadFile(path, true);
    return result.ok();
}

bool XMLReader::LoadFromStringPositioned(char const* text, Result& result) {
    result = LoadText(text, true);
    return result.ok();
}

std::shared_ptr<XMLReader::Section> XMLReader::MakeRoom() {
    if (m_sections.size() == m_sections.capacity()) m_sections.reserve(2 * m_sections.size() + 4);
    std::shared_ptr<Section> section;
    if (Section* parent = Current()) section = std::move(parent->spare);
    return section && section.use_count() == 1 ? section : std::make_shared<Section>();
}

void XMLReader::Push(std::shared_ptr<Section> section, const std::shared_ptr<XmlDocument>& document,
                     XmlNode* element) noexcept {
    if (section->document != document) section->document = document;
    section->element = element;
    section->children = document->Children(element);
    section->hasChildNames = false;
    section->childNames.clear();
    m_sections.push_back(std::move(section));
}

bool XMLReader::EnterSection(char const* name, bool fromStart) {
    std::string buffer;
    const std::string_view utf8 = Utf8View(name, buffer);
    Section* current = Current();
    if (!current) {
        XmlNode* root = m_document ? m_document->SelectSingle(utf8.data()) : nullptr;
        if (root) Push(MakeRoom(), m_document, root);
        return root != nullptr;
    }
    XmlChildren children = current->children;
    if (fromStart) children.Reset();
    XmlNode* child = current->document->NextElement(children, utf8);
    std::shared_ptr<Section> section = child ? MakeRoom() : nullptr;
    current->children = children;
    if (child) Push(std::move(section), current->document, child);
    return child != nullptr;
}

void XMLReader::CloseSection() {
    if (m_sections.empty()) return;
    std::shared_ptr<Section> closed = std::move(m_sections.back());
    m_sections.pop_back();
    Section* parent = Current();
    if (parent && m_sections.size() < kMaxSpareDepth) parent->spare = std::move(closed);
}

const std::vector<CStringA>& XMLReader::GetChildSections() const {
    static const std::vector<CStringA>& none = *new std::vector<CStringA>;
    Section* current = Current();
    if (!current) return none;
    if (!current->hasChildNames) {
        current->childNames.clear();  // memory may have run out in the middle of an earlier attempt
        XmlChildren all = current->children;
        all.Reset();
        while (XmlNode* child = current->document->NextElement(all))
            current->childNames.push_back(ToCString(current->document->LocalName(child)));
        current->hasChildNames = true;
    }
    return current->childNames;
}

const std::vector<CStringA>& XMLReader::GetAttributeNames() const {
    // Kept: one list for all readers and calls, so a result lasts only until the next call.
    static std::vector<CStringA>& names = *new std::vector<CStringA>;
    names.clear();
    if (const Section* current = Current())
        current->document->VisitAttributes(current->element, [](const brindle::XmlAttribute& attribute) {
            names.push_back(ToCString(attribute.localName));
        });
    return names;
}

void XMLReader::ReadAttributes(std::vector<XMLAttribute>& attributes) const {
    std::size_t count = 0;
    if (const Section* current = Current())
        current->document->VisitAttributes(current->element, [&](const brindle::XmlAttribute& attribute) {
            if (!attribute.prefix.empty()) return;
            if (count == attributes.size()) attributes.emplace_back();
            AssignBytes(attribute.localName, attributes[count].name.str());
            AssignBytes(attribute.value, attributes[count++].value.str());
        });
    attributes.resize(count);
}

bool XMLReader::FindAttribute(char const* name, std::string& buffer, std::string_view& value) const {
    const Section* current = Current();
    if (!current) return false;
    std::string nameBuffer;
    return current->document->FindAttribute(current->element, Utf8View(name, nameBuffer), buffer, value);
}

bool XMLReader::ReadAttribute(char const* name, std::string& value) const {
    std::string buffer;
    std::string_view utf8;
    if (!FindAttribute(name, buffer, utf8)) return false;
    AssignBytes(utf8, value);
    return true;
}

bool XMLReader::ReadAttribute(char const* name, CStringA& value) const {
    if (!Current()) return false;
    const bool found = ReadAttribute(name, value.str());
    if (!found) value.Empty();
    return found;
}

bool XMLReader::ReadAttribute(char const* name, int& value) const {
    std::string buffer;
    std::string_view text;
    if (!FindAttribute(name, buffer, text) || text.empty()) return false;
    value = brindle::ReadInt(text);
    return true;
}

bool XMLReader::ReadAttribute(char const* name, long& value) const {
    int number = 0;
    if (!ReadAttribute(name, number)) return false;
    value = number;
    return true;
}

bool XMLReader::ReadAttribute(char const* name, bool& value) const {
    std::string buffer;
    std::string_view text;
    if (!FindAttribute(name, buffer, text)) return false;
    const bool yes = EqualsNoCase(text, "TRUE") || text == "1" || EqualsNoCase(text, "ON");
    const bool no = EqualsNoCase(text, "FALSE") || text == "0" || EqualsNoCase(text, "OFF");
    if (yes || no) value = yes;
    return yes || no;
}

std::string XMLReader::ReadData() const {
    const Section* current = Current();
    std::string bytes;
    if (current) AssignBytes(current->document->Text(current->element), bytes);
    return bytes;
}

void XMLReader::ReadXML(std::string& xml) const {
    const Section* current = Current();
    std::string utf8;
    if (current && current->document->Markup(current->element, utf8).ok()) AssignBytes(utf8, xml);
}

void XMLReader::ReadXML(CStringA& xml) const {
    xml.Empty();
    ReadXML(xml.str());
}

void XMLReader::CreateSection(char const* name) {
    const Section* current = Current();
    if (!current) return;
    std::string buffer;
    const std::string_view utf8 = Utf8View(name, buffer);
    std::shared_ptr<Section> section = MakeRoom();
    XmlNode* created = current->document->AppendElement(current->element, utf8.data());
    if (created) Push(std::move(section), current->document, created);
}

bool XMLReader::WriteAttribute(char const* name, CStringA& value) {
    const Section* current = Current();
    if (!current) return false;
    std::string nameBuffer;
    std::string valueBuffer;
    return current->document->SetAttribute(current->element, Utf8View(name, nameBuffer).data(),
                                           Utf8View(value.GetString(), valueBuffer).data());
}

bool XMLReader::WriteAttribute(char const* name, int& /*value*/) {
    // Kept: a placeholder that never wrote real numbers; what it leaves in a document is known to its
    // callers.
    CStringA placeholder("150");
    WriteAttribute(name, placeholder);
    return false;
}

std::pair<XmlDocument*, XmlNode*> XMLReader::CurrentElement() const noexcept {
    const Section* current = Current();
    if (!current) return {};
    return {current->document.get(), current->element};
}

bool XMLReader::GetPosition(std::uint32_t& line, std::uint32_t& column) const {
    const Section* current = Current();
    if (!current) return false;
    const brindle::XmlPosition place = current->document->Position(current->element);
    if (place.line == 0) return false;
    line = place.line;
    column = place.column;
    return true;
}
