// Arbitrary bytes as an XML text and as an XML file: every read of XMLReader, everywhere in the document, and
// its markup read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "brindle/platform/xml_dom.h"
#include "brindle/xml/xml_reader.h"

namespace {

void ReadSection(XMLReader& reader) {
    std::string text;
    CStringA string;
    int number = 0;
    long longNumber = 0;
    bool flag = false;
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    const std::vector<CStringA> names = reader.GetAttributeNames();
    for (const CStringA& name : names) {
        reader.ReadAttribute(name, text);
        reader.ReadAttribute(name, string);
        reader.ReadAttribute(name, number);
        reader.ReadAttribute(name, longNumber);
        reader.ReadAttribute(name, flag);
    }
    std::vector<XMLAttribute> attributes;
    reader.ReadAttributes(attributes);
    for (const XMLAttribute& attribute : attributes)
        if (!reader.ReadAttribute(attribute.name, string) || string != attribute.value) std::abort();
    reader.GetPosition(line, column);
}

// Every element once, in document order; the root is entered.
void Walk(XMLReader& reader) {
    struct Level {
        std::vector<CStringA> children;  // a copy: the section's own list ends with the section
        std::size_t next = 0;
    };
    std::vector<Level> levels;
    ReadSection(reader);
    levels.push_back({reader.GetChildSections()});
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.next < level.children.size()) {
            if (!reader.EnterSection(level.children[level.next++], false)) continue;  // a name without bytes
            ReadSection(reader);
            levels.push_back({reader.GetChildSections()});
        } else {
            reader.CloseSection();
            levels.pop_back();
        }
    }
}

void EditAndRead(XMLReader& reader) {
    std::string text = reader.ReadData();
    CStringA value(text);
    reader.WriteAttribute("fuzz", value);
    reader.CreateSection("fuzz");
    reader.CloseSection();
    reader.ReadXML(text);
}

// What is written must be read, and be written the same again.
void CheckMarkup(brindle::XmlDocument& document) {
    std::string first;
    std::string second;
    if (!document.SelectSingle("/*") || !document.DocumentMarkup(first).ok()) return;
    const auto again = brindle::CurrentXmlDom().CreateDocument();
    const auto result = again->Parse(first, brindle::XmlInput::kText, brindle::XmlPositions::kNone);
    if (result.code == brindle::ErrorCode::kLimit) return;  // escaped texts are longer
    if (!result.ok() || !again->DocumentMarkup(second).ok() || first != second) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    brindle::Result result;
    XMLReader reader;
    if (reader.LoadFromStringPositioned(bytes.c_str(), result) && reader.EnterSection("/*", true)) {
        Walk(reader);
        if (reader.EnterSection("/*", true)) EditAndRead(reader);
    }
    const auto document = brindle::CurrentXmlDom().CreateDocument();
    if (document->Parse(bytes, brindle::XmlInput::kFile, brindle::XmlPositions::kRecord).ok())
        CheckMarkup(*document);
    else
        document->SelectSingle(bytes.c_str());
    if (document->AppendElement(nullptr, "a")) document->SelectSingle(bytes.c_str());
    return 0;
}
