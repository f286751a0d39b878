// See skin_document.h. Tests: skin_document_test.cpp.
#include "host/skin_document.h"

#include <brindle/xml/xml_reader.h>

#include <algorithm>

#include "host/child_sections.h"
#include "host/words.h"

namespace brindle::host {

namespace {

// Shows the section of every element of every mode; the root is entered.
template <class Visit>
void ForEachElement(XMLReader& reader, Visit visit) {
    ForEachChild(reader, [&](const CStringA& mode) {
        ForEachChild(reader, [&](const CStringA& element) { visit(mode.str(), element.str()); });
    });
}

SkinValueKind KindOf(const std::string& text) {
    int number = 0;
    if (text.starts_with('#') && IsSkinColour(text)) return SkinValueKind::kColour;
    return ParseInt(text, number) ? SkinValueKind::kNumber : SkinValueKind::kText;
}

class SkinChecker {
  public:
    SkinChecker(const std::string& path, Problems& problems)
        : m_path(path), m_problems(problems), m_vocabulary(SkinVocabulary()) {}

    void Run() {
        Result result;
        if (!m_reader.LoadPositioned(m_path.c_str(), result)) {
            m_problems.push_back({m_path, result.line, result.column, result.text});
            return;
        }
        if (!m_reader.EnterSection("skin", true)) {
            m_problems.push_back({m_path, 1, 1, "the document is no \"skin\""});
            return;
        }
        ForEachElement(m_reader, [this](const std::string&, const std::string& element) { Check(element); });
    }

  private:
    void Report(std::string text) {
        Problem problem{m_path, 0, 0, std::move(text)};
        m_reader.GetPosition(problem.line, problem.column);
        m_problems.push_back(std::move(problem));
    }

    void Check(const std::string& element) {
        const bool known = std::any_of(m_vocabulary.begin(), m_vocabulary.end(),
                                       [&](const auto& entry) { return entry.element == element; });
        if (!known) return Report("element \"" + element + "\" is unknown");
        std::vector<XMLAttribute> attributes;
        m_reader.ReadAttributes(attributes);
        for (const XMLAttribute& attribute : attributes)
            CheckValue(element, attribute.name.str(), attribute.value.str());
    }

    void CheckValue(const std::string& element, const std::string& attribute, const std::string& text) {
        const auto entry = std::find_if(m_vocabulary.begin(), m_vocabulary.end(), [&](const auto& e) {
            return e.element == element && e.attribute == attribute;
        });
        const std::string value = attribute + "=\"" + text.substr(0, 40) + "\"";
        int number = 0;
        if (entry == m_vocabulary.end())
            Report("attribute \"" + attribute + "\" of \"" + element + "\" is unknown");
        else if (entry->kind == SkinValueKind::kColour && !IsSkinColour(text))
            Report(value + " is not a colour such as #FF8000");
        else if (entry->kind == SkinValueKind::kNumber && !ParseInt(text, number))
            Report(value + " is not a number");
    }

    const std::string& m_path;
    Problems& m_problems;
    XMLReader m_reader;
    std::vector<SkinVocabularyEntry> m_vocabulary;
};

}  // namespace

bool ListSkinValues(OVSkin& skin, std::vector<SkinValue>& values) {
    values.clear();
    XMLReader reader;
    CStringA unused;
    if (!reader.LoadFromString(skin.GetXML(), unused) || !reader.EnterSection("skin", true)) return false;
    std::vector<XMLAttribute> attributes;
    ForEachElement(reader, [&](const std::string& mode, const std::string& element) {
        reader.ReadAttributes(attributes);
        for (const XMLAttribute& attribute : attributes)
            values.push_back({mode, element, attribute.name.str(), attribute.value.str()});
    });
    return true;
}

std::vector<SkinVocabularyEntry> SkinVocabulary() {
    OVSkin skin;
    skin.LoadFromFile("");  // no file: the built-in skin
    std::vector<SkinValue> values;
    ListSkinValues(skin, values);
    std::vector<SkinVocabularyEntry> vocabulary;
    for (const SkinValue& value : values) {
        const bool known = std::any_of(vocabulary.begin(), vocabulary.end(), [&](const auto& entry) {
            return entry.element == value.element && entry.attribute == value.attribute;
        });
        if (!known) vocabulary.push_back({value.element, value.attribute, KindOf(value.text)});
    }
    return vocabulary;
}

bool IsSkinColour(const std::string& text) noexcept {
    const std::size_t digits = text.starts_with('#') ? 1 : 0;
    return text.size() == digits + 6 &&
           text.find_first_not_of("0123456789abcdefABCDEF", digits) == std::string::npos;
}

void CheckSkin(const std::string& path, Problems& problems) {
    SkinChecker(path, problems).Run();
}

std::vector<std::string> LostBySkin(const std::string& path) {
    constexpr struct {
        const char* xpath;  // the root when it has some
        const char* what;
    } kKinds[] = {
        {"/*[@*]", "attributes of the root"},
        {"/*[*/@*]", "attributes of modes"},
        {"/*[*/*/@*[contains(name(), ':')]]", "attributes with a prefix"},
        {"/*[*/*[not(@*)]]", "elements without attributes"},
        {"/*[*/*/*]", "elements inside elements"},
        {"/*[.//text()[normalize-space()]]", "texts"},
        {"/*[//comment()]", "comments"},
        {"/*[//processing-instruction()]", "processing instructions"},
    };
    std::vector<std::string> lost;
    XMLReader reader;
    CStringA unused;
    if (!reader.Load(path.c_str(), unused)) return lost;
    for (const auto& kind : kKinds) {
        if (!reader.EnterSection(kind.xpath, true)) continue;
        reader.CloseSection();
        lost.emplace_back(kind.what);
    }
    return lost;
}

}  // namespace brindle::host
