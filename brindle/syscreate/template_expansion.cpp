// See template_expansion.h. Templates come from anywhere: what an action would make is counted before any of it is
// made.
#include "brindle/syscreate/template_expansion.h"

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "brindle/behaviour/action.h"
#include "brindle/behaviour/action_list.h"
#include "brindle/behaviour/trigger_list.h"
#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

constexpr const char* kEmptyDocument = "<?xml version=\"1.0\"?>";
// What one element or attribute takes in a document beside its texts, and one entry of the mask table.
constexpr std::uint64_t kNodeBytes = 200;
constexpr std::uint64_t kMaskBytes = 300;
constexpr std::size_t kProgressStep = 1024;

std::size_t Occurrences(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos;
         at = text.find(part, at + part.size()))
        ++count;
    return count;
}

std::uint64_t TotalLength(const CStringArray& texts, std::ptrdiff_t count) {
    std::uint64_t length = 0;
    for (std::ptrdiff_t i = 0; i < std::min(count, texts.GetSize()); ++i) length += texts[i].view().size();
    return length;
}

// The lines that hold something; separators in a row count as one.
std::vector<std::string_view> Lines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        if (end > 0) lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::uint64_t TotalLength(const std::vector<std::string_view>& texts) {
    std::uint64_t length = 0;
    for (const std::string_view text : texts) length += text.size();
    return length;
}

std::string ReadChild(XMLReader& reader, const char* name) {
    if (!reader.EnterSection(name, true)) return {};
    std::string text = reader.ReadData();
    reader.CloseSection();
    return text;
}

}  // namespace

TemplateExpansion::TemplateExpansion(const CStringArray& fields, const CStringArray& values,
                                     CMapStringToInt& masks, const SysCreate::Progress& progress,
                                     const ExpansionLimits& limits)
    : m_fields(fields), m_values(values), m_masks(masks), m_progress(progress), m_limits(limits) {}

Result TemplateExpansion::Run(const CStringA& templateXml, CStringA& expanded, CStringA& results) {
    Result result = Expand(templateXml);
    CStringA output;
    CStringA list;
    if (result.ok() && (!m_output.SaveToString(output) || !m_results.Text(list)))
        result = Result::Error(ErrorCode::kInvalidArgument, "a text holds a character that XML cannot hold");
    if (!result.ok()) {
        output = kEmptyDocument;
        ResultsDocument().Text(list);
    }
    expanded = std::move(output.str());
    results = std::move(list.str());
    return result;
}

Result TemplateExpansion::Expand(const CStringA& templateXml) {
    if (!m_output.Initialize())
        return Result::Error(ErrorCode::kUnsupported, "no XML document can be created");
    Result loaded;
    if (!m_reader.LoadFromStringPositioned(templateXml, loaded)) return loaded;
    if (!m_reader.EnterSection("BehaviourList", true))
        return Result::Error(ErrorCode::kNotFound, "the root element is not \"BehaviourList\"");
    m_output.EnterSection("BehaviourList");
    while (m_failure.ok() && m_reader.EnterSection("Behaviour", false)) {
        m_output.EnterSection("Behaviour");
        ExpandBehaviour();
        m_output.CloseSection();
        m_reader.CloseSection();
    }
    m_output.CloseSection();
    return m_failure;
}

void TemplateExpansion::ExpandBehaviour() {
    CCommandTriggerList triggers;
    triggers.Load(m_reader);
    triggers.Save(m_output);
    if (!m_reader.EnterSection("ActionList", true)) return;
    m_output.EnterSection("ActionList");
    for (const CStringA& name : m_reader.GetChildSections()) {
        if (!m_reader.EnterSection(name, false)) continue;
        ExpandAction(name);
        m_reader.CloseSection();
        if (!m_failure.ok()) break;
    }
    m_output.CloseSection();
    m_reader.CloseSection();
}

void TemplateExpansion::ExpandAction(const CStringA& elementName) {
    const std::unique_ptr<CCommandAction> action(CCommandActionList::CreateObject(elementName, 0));
    if (!action) return;
    action->Load(m_reader);
    std::string markup;
    m_reader.ReadXML(markup);
    const bool placeholder = markup.find(kFieldPlaceholder) != std::string::npos ||
                             markup.find(kValuePlaceholder) != std::string::npos;
    const CStringA type = action->GetText(1);
    if (type == "Get SNMP" && placeholder) {
        Replicate(*action, markup);
    } else if (type == "Mask Unit") {
        action->Save(m_output);
        MaskUnits();
    } else if (type == "Mask Header") {
        action->Save(m_output);
        MaskHeaders(markup);
    } else {
        action->SetTemplate(false);
        action->Save(m_output);
    }
}

void TemplateExpansion::Replicate(CCommandAction& action, const std::string& markup) {
    const std::ptrdiff_t count = m_fields.GetSize();
    const std::uint64_t copies =
        std::min<std::uint64_t>(static_cast<std::uint64_t>(count), m_limits.results + 1);
    const std::uint64_t each =
        markup.size() + kNodeBytes * (Occurrences(markup, "<") + Occurrences(markup, "=") + 1);
    const std::uint64_t replaced =
        TotalLength(m_fields, count) * Occurrences(markup, kFieldPlaceholder) +
        TotalLength(m_values, count) * (Occurrences(markup, kValuePlaceholder) + 1);
    if (!Afford(copies, copies * each + replaced)) return;
    action.SetTemplate(true);
    action.Save(m_output);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        if (i >= m_values.GetSize())
            throw std::invalid_argument("field " + PrintInt(i + 1) + " has no value");
        action.ReplaceData(m_reader, m_output, kFieldPlaceholder, m_fields[i], kValuePlaceholder,
                           m_values[i]);
        CStringA unit;
        CStringA header;
        action.GetResultInfo(unit, header);
        m_results.AddValue(static_cast<std::size_t>(i), m_values[i], unit, header);
        ReportProgress();
    }
}

void TemplateExpansion::MaskUnits() {
    const std::string text = m_reader.ReadData();
    const std::vector<std::string_view> units = Lines(text);
    if (!Afford(units.size(), units.size() * kMaskBytes + 3 * TotalLength(units))) return;
    for (const std::string_view unit : units) AddMask(unit, "*");
}

void TemplateExpansion::MaskHeaders(const std::string& markup) {
    XMLReader lists;
    Result result;
    if (!lists.LoadFromStringPositioned(markup.c_str(), result))
        return Fail(ErrorCode::kLimit, "the lists of the mask action are too long");
    if (!lists.EnterSection("MaskHeaderAction", true)) return;
    const std::string unitText = ReadChild(lists, "UnitList");
    const std::string headerText = ReadChild(lists, "HeaderList");
    const std::vector<std::string_view> units = Lines(unitText);
    const std::vector<std::string_view> headers = Lines(headerText);
    const std::uint64_t combinations = std::uint64_t{units.size()} * headers.size();
    const std::uint64_t length = TotalLength(units) * headers.size() + TotalLength(headers) * units.size();
    if (!Afford(combinations, combinations * kMaskBytes + 3 * length)) return;
    for (const std::string_view unit : units)
        for (const std::string_view header : headers) AddMask(unit, header);
}

void TemplateExpansion::AddMask(std::string_view unit, std::string_view header) {
    m_results.AddMask(unit, header);
    m_masks.SetAt(CStringA(std::string(unit).append(header)), 1);
    ReportProgress();
}

void TemplateExpansion::ReportProgress() {
    if (m_progress && m_results.Count() % kProgressStep == 0) m_progress(m_results.Count());
}

bool TemplateExpansion::Afford(std::uint64_t results, std::uint64_t bytes) {
    if (results > m_limits.results - m_results.Count())
        Fail(ErrorCode::kLimit,
             "the template makes more than " + PrintUnsigned(m_limits.results) + " results");
    else if (bytes > m_limits.bytes - m_bytes)
        Fail(ErrorCode::kLimit, "the expanded documents would take more than " +
                                    PrintUnsigned(m_limits.bytes >> 20) + " MiB of memory");
    else
        m_bytes += bytes;
    return m_failure.ok();
}

void TemplateExpansion::Fail(ErrorCode code, std::string why) {
    m_failure = Result::Error(code, std::move(why));
    m_reader.GetPosition(m_failure.line, m_failure.column);
}

}  // namespace brindle
