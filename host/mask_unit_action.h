// MaskUnitAction: the units whose alarms are masked, whatever the header: one name a line, the element's text. This
// host masks nothing by itself: a run logs which units are meant, and system creation lists them as results.
#pragma once

#include "host/host_action.h"

namespace brindle::host {

class MaskUnitAction final : public HostAction<MaskUnitAction> {
  public:
    static constexpr const char* kTypeName = "MaskUnitAction";
    static constexpr const char* kTypeText = "Mask Unit";  // what system creation knows it by

    std::string Summary() const override;
    std::vector<std::string> Conflicts() const override;

  private:
    void OwnAttributes(AttributeTable&) override {}
    void SaveContent(XMLWriter& writer) const override;
    void LoadContent(XMLReader& reader) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    CStringA m_units;  // as it stands in the file
};

}  // namespace brindle::host
