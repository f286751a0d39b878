// MaskHeaderAction: every combination of its units with its headers is masked: two lists, one name a line. As with
// MaskUnitAction a run only logs what is meant.
#pragma once

#include "host/host_action.h"

namespace brindle::host {

class MaskHeaderAction final : public HostAction<MaskHeaderAction> {
  public:
    static constexpr const char* kTypeName = "MaskHeaderAction";  // system creation opens this very element
    static constexpr const char* kTypeText = "Mask Header";       // what system creation knows it by

    bool KnowsElement(const CStringA& name) const override;
    std::string Summary() const override;
    std::vector<std::string> Conflicts() const override;

  private:
    void OwnAttributes(AttributeTable&) override {}
    void SaveContent(XMLWriter& writer) const override;
    void LoadContent(XMLReader& reader) override;
    void Perform(HostContext& context, const CCommandEvent* event) override;

    CStringA m_units;  // both as they stand in the file
    CStringA m_headers;
};

}  // namespace brindle::host
