// The mask-header action. Tests: system_creation_test.cpp.
#include "host/mask_header_action.h"

#include "host/mask_lines.h"

namespace brindle::host {

namespace {

constexpr const char* kUnitList = "UnitList";  // stored: do not change
constexpr const char* kHeaderList = "HeaderList";

void SaveList(XMLWriter& writer, const char* name, const CStringA& text) {
    writer.EnterSection(name);
    if (!text.IsEmpty()) writer.WriteData(text);
    writer.CloseSection();
}

CStringA LoadList(XMLReader& reader, const char* name) {
    if (!reader.EnterSection(name, true)) return {};
    CStringA text = reader.ReadData();
    reader.CloseSection();
    return text;
}

}  // namespace

bool MaskHeaderAction::KnowsElement(const CStringA& name) const {
    return name == kUnitList || name == kHeaderList;
}

std::string MaskHeaderAction::Summary() const {
    return Name().IsEmpty() ? MaskList(m_units) + ": " + MaskList(m_headers) : Name().str();
}

std::vector<std::string> MaskHeaderAction::Conflicts() const {
    std::vector<std::string> conflicts;
    if (MaskLines(m_units).empty()) conflicts.push_back("\"UnitList\" names no unit: nothing is masked");
    if (MaskLines(m_headers).empty())
        conflicts.push_back("\"HeaderList\" names no header: nothing is masked");
    return conflicts;
}

void MaskHeaderAction::SaveContent(XMLWriter& writer) const {
    SaveList(writer, kUnitList, m_units);
    SaveList(writer, kHeaderList, m_headers);
}

void MaskHeaderAction::LoadContent(XMLReader& reader) {
    m_units = LoadList(reader, kUnitList);
    m_headers = LoadList(reader, kHeaderList);
}

void MaskHeaderAction::Perform(HostContext& context, const CCommandEvent*) {
    context.WriteLog(*this, CStringA("masks " + MaskList(m_units) + ": " + MaskList(m_headers)));
}

}  // namespace brindle::host
