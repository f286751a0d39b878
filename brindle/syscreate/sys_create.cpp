// SysCreate: results lists and alarm records; the expansion is TemplateExpansion's. Tests: sys_create_test.cpp,
// results_list_test.cpp.
#include "brindle/syscreate/sys_create.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "brindle/platform/clock.h"
#include "brindle/platform/files.h"
#include "brindle/syscreate/results_document.h"
#include "brindle/syscreate/template_expansion.h"

using brindle::ResultsDocument;
using brindle::ResultType;

namespace {

constexpr std::uint64_t kLongestLog = 512'000;  // bytes

// The next "#name#", which `text` then stands behind; `found` is false when there is none.
std::string_view TakeField(std::string_view& text, bool& found) {
    const std::size_t open = text.find('#');
    const std::size_t close = open == std::string_view::npos ? open : text.find('#', open + 1);
    found = close != std::string_view::npos;
    if (!found) return {};
    const std::string_view name = text.substr(open + 1, close - open - 1);
    text.remove_prefix(close + 1);
    return name;
}

// The three numbers and the field of each kind of trigger are fixed: hosts have them in their files.
void FillBlock(SvirtAlarmTrigData& record) {
    switch (static_cast<ResultType>(record.type)) {
        case ResultType::kState:
            record.stateCode = 4;
            record.stateMode = 2;
            record.stateValue = 6;
            record.stateField = "State";
            break;
        case ResultType::kCaption:
            record.captionCode = 4;
            record.captionMode = 8;
            record.captionValue = -518;
            record.captionField = "Caption";
            break;
        case ResultType::kMask:
            record.maskCode = 4;
            record.maskMode = 2;
            record.maskValue = -999;
            record.maskField = "Mask";
            break;
        default:
            break;
    }
}

}  // namespace

SysCreate::SysCreate() : m_masks(std::make_shared<CMapStringToInt>()) {}
SysCreate::SysCreate(const SysCreate& other) = default;
SysCreate& SysCreate::operator=(const SysCreate& other) = default;
SysCreate::~SysCreate() = default;

CStringA SysCreate::ExpandXML(CStringA templateXml, const CStringArray* fields, const CStringArray* values) {
    const CStringArray none;
    CStringA expanded;
    ExpandPositioned(templateXml, fields ? *fields : none, values ? *values : none, expanded);
    return expanded;
}

brindle::Result SysCreate::ExpandPositioned(const CStringA& templateXml, const CStringArray& fields,
                                            const CStringArray& values, CStringA& expanded,
                                            const Progress& progress) {
    brindle::TemplateExpansion expansion(fields, values, *m_masks, progress);
    return expansion.Run(templateXml, expanded, m_resultInfo);
}

CStringA SysCreate::ResultInfo() const {
    return m_resultInfo;
}

CStringA SysCreate::CreateResultsForStringsOfFields(CStringA unit, CStringA text) {
    ResultsDocument results;
    std::string_view rest = text.view();
    const auto marks = static_cast<std::size_t>(std::count(rest.begin(), rest.end(), '#'));
    bool found = marks / 2 <= kMaxResults;
    while (found) {
        const std::string_view name = TakeField(rest, found);
        if (found) results.AddCaption(unit.view(), name);
    }
    if (!results.Text(m_resultInfo)) ResultsDocument().Text(m_resultInfo);
    return m_resultInfo;
}

bool SysCreate::CheckMaskResults(const CMapStringToInt& found) const {
    std::ptrdiff_t unexpected = found.GetCount();
    for (POSITION position = m_masks->GetStartPosition(); position;) {
        CStringA key;
        int value = 0;
        int foundValue = 0;
        m_masks->GetNextAssoc(position, key, value);
        if (found.Lookup(key, foundValue) && foundValue == value) --unexpected;
    }
    return unexpected != 0;
}

bool SysCreate::CreateVirtualAlarmTriggerList(CStringA resultsXml) {
    // A reader that has sections open would look for the list inside them.
    m_results = XMLReader();
    CStringA unused;
    if (m_results.LoadFromString(resultsXml, unused) && m_results.EnterSection("ResultsList", true))
        return true;
    m_results = XMLReader();
    return false;
}

bool SysCreate::GetNextVirtualAlarmTrigger(SvirtAlarmTrigData& record) {
    record.stateUsed = record.captionUsed = record.maskUsed = false;
    if (!m_results.EnterSection("Result", false)) return false;
    m_results.ReadAttribute("Header", record.header);
    m_results.ReadAttribute("Unit", record.unit);
    int type = 0;
    if (m_results.ReadAttribute("Type", type)) {
        record.type = type;
        FillBlock(record);
    }
    m_results.CloseSection();
    return true;
}

void SysCreate::AppendLog(const char* file, const char* text) {
    if (!file) return;
    brindle::LocalTime now;
    brindle::CurrentClock().ToLocalTime(brindle::UnixSeconds(), now);
    CStringA line;
    line.Format("%02d:%02d:%04d %02d:%02d:%02d   ", now.day, now.month, now.year, now.hour, now.minute,
                now.second);
    line.str().append(text ? text : "").append("\r\n");
    // Skipped silently when it cannot be written: nobody waits for a log.
    static_cast<void>(brindle::CurrentFiles().Append(file, line.view(), kLongestLog));
}
