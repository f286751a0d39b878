// OVSkin: the store of a skin, its look-ups and its document. Tests: ov_skin_test.cpp, ov_skin_document_test.cpp.
#include "brindle/skin/ov_skin.h"

#include <algorithm>
#include <array>
#include <vector>

#include "brindle/framework/never_destroyed.h"
#include "brindle/framework/number_text.h"
#include "brindle/skin/default_skin.h"
#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"

namespace {

constexpr const char* kRoot = "skin";  // stored: do not change

// Two hexadecimal digits as far as they are ones: "1z" is 1, "zz" is 0.
unsigned long ReadPair(std::string_view pair) noexcept {
    unsigned long value = 0;
    for (const char c : pair) {
        if (c >= '0' && c <= '9')
            value = value * 16 + static_cast<unsigned long>(c - '0');
        else if (c >= 'a' && c <= 'f')
            value = value * 16 + static_cast<unsigned long>(c - 'a' + 10);
        else if (c >= 'A' && c <= 'F')
            value = value * 16 + static_cast<unsigned long>(c - 'A' + 10);
        else
            break;
    }
    return value;
}

// In byte order already, as sorting strings takes much longer than sorting pointers to them.
void AppendTo(brindle::SortedTexts& texts, const std::vector<XMLAttribute>& attributes) {
    std::vector<const XMLAttribute*> ordered;
    ordered.reserve(attributes.size());
    for (const XMLAttribute& attribute : attributes) ordered.push_back(&attribute);
    std::sort(ordered.begin(), ordered.end(),
              [](const XMLAttribute* a, const XMLAttribute* b) { return a->name.view() < b->name.view(); });
    if (texts.IsEmpty()) texts.Reserve(attributes.size());
    for (const XMLAttribute* attribute : ordered) texts.Append(attribute->name, attribute->value);
}

}  // namespace

OVSkin::OVSkin() = default;
OVSkin::OVSkin(const OVSkin& other) = default;
OVSkin& OVSkin::operator=(const OVSkin& other) = default;
OVSkin::~OVSkin() = default;

bool OVSkin::LoadFromFile(const CStringA& path) {
    XMLReader reader;
    if (reader.Load(path, m_error)) return ReadXML(reader);
    XMLReader fallback;
    return fallback.LoadFromString(brindle::g_defaultSkin, m_error) && ReadXML(fallback);
}

bool OVSkin::LoadFromStr(const CStringA& xml) {
    XMLReader reader;
    return reader.LoadFromString(xml, m_error) && ReadXML(reader);
}

bool OVSkin::ReadXML(XMLReader& reader) {
    if (!reader.EnterSection(kRoot, true)) return false;
    OVSkin merged(*this);  // all of the document or nothing, should memory run out
    for (const CStringA& mode : reader.GetChildSections()) {
        reader.EnterSection(mode, false);
        merged.ReadMode(mode, reader);
        reader.CloseSection();
    }
    reader.CloseSection();
    merged.m_modes.ForEachValue(
        [](Elements& elements) { elements.ForEachValue([](auto& texts) { texts.Sort(); }); });
    std::swap(m_modes, merged.m_modes);
    if (merged.m_xml.IsEmpty()) m_xml.Empty();
    return true;
}

// Leaves texts to be sorted. Modes and elements come into being with their first value.
void OVSkin::ReadMode(const CStringA& mode, XMLReader& reader) {
    Elements* elements = nullptr;
    std::vector<XMLAttribute> attributes;
    for (const CStringA& element : reader.GetChildSections()) {
        reader.EnterSection(element, false);
        reader.ReadAttributes(attributes);
        reader.CloseSection();
        if (attributes.empty()) continue;
        m_xml.Empty();
        if (!elements) elements = &m_modes.FindOrAdd(mode);
        AppendTo(elements->FindOrAdd(element), attributes);
    }
}

const CStringA& OVSkin::GetXML() {
    XMLWriter writer;
    if (!m_xml.IsEmpty() || !writer.Initialize()) return m_xml;
    writer.EnterSection(kRoot);
    for (const auto& mode : m_modes.Entries()) {
        writer.EnterSection(mode.name);
        for (const auto& element : mode.value.Entries()) {
            writer.EnterSection(element.name);
            for (const auto& [name, value] : element.value.Entries())
                writer.WriteAttribute(name, value.GetString());
            writer.CloseSection();
        }
        writer.CloseSection();
    }
    writer.CloseSection();
    writer.SaveToString(m_xml);
    return m_xml;
}

bool OVSkin::PrepNewSkin() {
    return true;
}

CStringA OVSkin::GetError() const {
    return m_error;
}

const CStringA* OVSkin::Find(const CStringA& mode, const CStringA& element,
                             const CStringA& attribute) const noexcept {
    const Elements* elements = m_modes.Find(mode.view());
    const brindle::SortedTexts* texts = elements ? elements->Find(element.view()) : nullptr;
    return texts ? texts->Find(attribute.view()) : nullptr;
}

const CStringA* OVSkin::FindOrDefault(const CStringA& mode, const CStringA& element,
                                      const CStringA& attribute) const noexcept {
    const CStringA* text = Find(mode, element, attribute);
    return text ? text : Find(GetModeStr(0), element, attribute);
}

bool OVSkin::GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          unsigned char& out) const {
    const CStringA* text = FindOrDefault(mode, element, attribute);
    if (text) out = static_cast<unsigned char>(brindle::ReadInt(text->view()) & 0xFF);
    return text != nullptr;
}

bool OVSkin::GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          int& out) const {
    const CStringA* text = FindOrDefault(mode, element, attribute);
    if (text) out = brindle::ReadInt(text->view());
    return text != nullptr;
}

bool OVSkin::GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          long& out) const {
    const CStringA* text = FindOrDefault(mode, element, attribute);
    if (text) out = brindle::ReadInt(text->view());
    return text != nullptr;
}

bool OVSkin::GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          unsigned long& out) const {
    const CStringA* text = FindOrDefault(mode, element, attribute);
    if (text) out = GetColorFromString(*text);
    return text != nullptr;
}

bool OVSkin::GetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          CStringA& out) const {
    const CStringA* text = Find(mode, element, attribute);
    if (text) out = *text;
    return text != nullptr;
}

bool OVSkin::GetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                          unsigned char& out) const {
    return GetExactProp(GetModeStr(mode), element, attribute, out);
}
bool OVSkin::GetExactProp(int mode, const CStringA& element, const CStringA& attribute, int& out) const {
    return GetExactProp(GetModeStr(mode), element, attribute, out);
}
bool OVSkin::GetExactProp(int mode, const CStringA& element, const CStringA& attribute, long& out) const {
    return GetExactProp(GetModeStr(mode), element, attribute, out);
}
bool OVSkin::GetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                          unsigned long& out) const {
    return GetExactProp(GetModeStr(mode), element, attribute, out);
}
bool OVSkin::GetExactProp(int mode, const CStringA& element, const CStringA& attribute, CStringA& out) const {
    return GetExactProp(GetModeStr(mode), element, attribute, out);
}

// What was added for a value that then found no memory.
void OVSkin::DropEmpty(const CStringA& mode) noexcept {
    if (!m_modes.Find(mode.view())) return;
    Elements& elements = m_modes.FindOrAdd(mode);
    if (!elements.Entries().empty() && elements.Entries().back().value.IsEmpty()) elements.RemoveLast();
    if (elements.Entries().empty()) m_modes.RemoveLast();
}

bool OVSkin::SetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          const CStringA& value) {
    try {
        m_modes.FindOrAdd(mode).FindOrAdd(element).Set(attribute, value);
    } catch (...) {
        DropEmpty(mode);
        throw;
    }
    m_xml.Empty();
    return true;
}

bool OVSkin::SetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          const int& value) {
    return SetExactProp(mode, element, attribute, CStringA(brindle::PrintInt(value)));
}

bool OVSkin::SetExactProp(const CStringA& mode, const CStringA& element, const CStringA& attribute,
                          const unsigned long& value) {
    return SetExactProp(mode, element, attribute, GetStringFromColour(value));
}

bool OVSkin::SetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                          const CStringA& value) {
    return SetExactProp(GetModeStr(mode), element, attribute, value);
}
bool OVSkin::SetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                          const unsigned char& value) {
    return SetExactProp(GetModeStr(mode), element, attribute, int{value});
}
bool OVSkin::SetExactProp(int mode, const CStringA& element, const CStringA& attribute, const int& value) {
    return SetExactProp(GetModeStr(mode), element, attribute, value);
}
bool OVSkin::SetExactProp(int mode, const CStringA& element, const CStringA& attribute, const long& value) {
    return SetExactProp(GetModeStr(mode), element, attribute, static_cast<int>(value));  // a long has 32 bits
}
bool OVSkin::SetExactProp(int mode, const CStringA& element, const CStringA& attribute,
                          const unsigned long& value) {
    return SetExactProp(GetModeStr(mode), element, attribute, value);
}

const CStringA& OVSkin::GetModeStr(int mode) {
    static brindle::NeverDestroyed<std::array<CStringA, 4>> names("default", "checked", "pressed", "rule");
    const auto index = static_cast<unsigned>(mode);
    return (*names)[index <= 3 ? index : 0];
}

// Kept: skins written by hand come in both cases and without "#"; what is written is always "#RRGGBB".
unsigned long OVSkin::GetColorFromString(const CStringA& text) noexcept {
    std::string_view digits = text.view();
    if (digits.size() == 7) digits.remove_prefix(1);
    if (digits.size() != 6) return 0;
    return ReadPair(digits.substr(0, 2)) | ReadPair(digits.substr(2, 2)) << 8 |
           ReadPair(digits.substr(4, 2)) << 16;
}

CStringA OVSkin::GetStringFromColour(unsigned long colour) {
    const unsigned long red = colour & 0xFF;
    const unsigned long green = colour >> 8 & 0xFF;
    const unsigned long blue = colour >> 16 & 0xFF;
    return CStringA("#" + brindle::PrintHex(red << 16 | green << 8 | blue, 6));
}
