// XMLWriter: builds a document through the XML DOM service and hands its markup to the file service.
#include "brindle/xml/xml_writer.h"

#include "brindle/framework/number_text.h"
#include "brindle/platform/files.h"
#include "brindle/platform/xml_dom.h"
#include "brindle/xml/xml_bytes.h"
#include "brindle/xml/xml_reader.h"

using brindle::Utf8View;
using brindle::XmlNode;

namespace {

// Where the next node goes: null is the document itself. False when it goes nowhere, because the document
// does not exist or the current section's name made no element.
bool FindPlace(const brindle::XmlDocument* document, const std::vector<XmlNode*>& sections, XmlNode*& place) {
    place = sections.empty() ? nullptr : sections.back();
    return document && (place || sections.empty());
}

// A place for one more open section, made before its element is: an element that could not be entered would stay in
// the document. Gone again unless it is kept.
class OpenSection {
  public:
    explicit OpenSection(std::vector<XmlNode*>& sections) : m_sections(sections) {
        sections.push_back(nullptr);
    }
    OpenSection(const OpenSection&) = delete;
    OpenSection& operator=(const OpenSection&) = delete;
    ~OpenSection() {
        if (!m_kept) m_sections.pop_back();
    }
    void Keep(XmlNode* element) noexcept {
        m_sections.back() = element;
        m_kept = true;
    }

  private:
    std::vector<XmlNode*>& m_sections;
    bool m_kept = false;
};

}  // namespace

XMLWriter::XMLWriter() = default;
XMLWriter::~XMLWriter() = default;
XMLWriter::XMLWriter(const XMLWriter& other) = default;
XMLWriter& XMLWriter::operator=(const XMLWriter& other) = default;

bool XMLWriter::Initialize() {
    if (m_initialised) return true;
    const std::shared_ptr<brindle::XmlDocument> document = brindle::CurrentXmlDom().CreateDocument();
    if (!document) return false;
    document->AppendInstruction(nullptr, "xml", "version='1.0'");
    m_document = document;
    m_initialised = true;
    return true;
}

void XMLWriter::EnterSection(char const* name) {
    XmlNode* place = nullptr;
    std::string buffer;
    const std::string_view utf8 = Utf8View(name, buffer);
    const bool found = FindPlace(m_document.get(), m_sections, place);
    OpenSection section(m_sections);  // null keeps enter and close balanced; nothing goes into such a section
    section.Keep(found ? m_document->AppendElement(place, utf8.data()) : nullptr);
}

bool XMLWriter::EnterCopy(const XMLReader& source, const std::vector<Replacement>& replacements) {
    const auto [document, element] = source.CurrentElement();
    XmlNode* place = nullptr;
    if (!element || !FindPlace(m_document.get(), m_sections, place)) return false;
    std::vector<std::string> buffers(2 * replacements.size());
    brindle::XmlReplacements utf8;
    utf8.reserve(replacements.size());
    for (const Replacement& replacement : replacements)
        utf8.push_back({Utf8View(replacement.from, buffers[2 * utf8.size()]),
                        Utf8View(replacement.to, buffers[2 * utf8.size() + 1])});
    OpenSection section(m_sections);
    XmlNode* copy = m_document->AppendCopy(place, *document, element, utf8);
    if (copy) section.Keep(copy);
    return copy != nullptr;
}

void XMLWriter::CloseSection() {
    if (!m_sections.empty()) m_sections.pop_back();
}

void XMLWriter::WriteAttribute(char const* name, char const* value) {
    XmlNode* element = nullptr;
    if (!FindPlace(m_document.get(), m_sections, element) || !element) return;
    std::string nameBuffer;
    std::string valueBuffer;
    m_document->SetAttribute(element, Utf8View(name, nameBuffer).data(), Utf8View(value, valueBuffer).data());
}

void XMLWriter::WriteAttribute(char const* name, int value) {
    WriteAttribute(name, brindle::PrintInt(value).c_str());
}

void XMLWriter::WriteAttribute(char const* name, bool value) {
    WriteAttribute(name, value ? "TRUE" : "FALSE");  // stored: do not change
}

void XMLWriter::WriteData(char const* text) {
    XmlNode* place = nullptr;
    std::string buffer;
    if (FindPlace(m_document.get(), m_sections, place))
        m_document->AppendText(place, Utf8View(text, buffer).data());
}

void XMLWriter::WriteComment(char const* text) {
    XmlNode* place = nullptr;
    std::string buffer;
    if (FindPlace(m_document.get(), m_sections, place))
        m_document->AppendComment(place, Utf8View(text, buffer).data());
}

bool XMLWriter::Save(char const* path) const {
    std::string utf8;
    if (!path || !*path || !m_document || !m_document->DocumentMarkup(utf8).ok()) return false;
    return brindle::CurrentFiles().WriteWhole(path, utf8).ok();
}

bool XMLWriter::SaveToString(CStringA& xml) const {
    return SaveToString(xml.str());
}

bool XMLWriter::SaveToString(std::string& xml) const {
    std::string utf8;
    if (!m_document || !m_document->DocumentMarkup(utf8).ok()) return false;
    brindle::AssignBytes(utf8, xml);
    return true;
}
