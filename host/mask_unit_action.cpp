// The mask-unit action. Tests: system_creation_test.cpp.
#include "host/mask_unit_action.h"

#include "host/mask_lines.h"

namespace brindle::host {

std::string MaskUnitAction::Summary() const {
    return Name().IsEmpty() ? MaskList(m_units) : Name().str();
}

std::vector<std::string> MaskUnitAction::Conflicts() const {
    if (MaskLines(m_units).empty()) return {"names no unit: nothing is masked"};
    return {};
}

void MaskUnitAction::SaveContent(XMLWriter& writer) const {
    if (!m_units.IsEmpty()) writer.WriteData(m_units);
}

void MaskUnitAction::LoadContent(XMLReader& reader) {
    m_units = reader.ReadData();
}

void MaskUnitAction::Perform(HostContext& context, const CCommandEvent*) {
    context.WriteLog(*this, CStringA("masks " + MaskList(m_units)));
}

}  // namespace brindle::host
