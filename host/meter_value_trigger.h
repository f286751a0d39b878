// MeterValueTrigger: fires when a meter rises over "Above" or falls under "Below". The condition ends only
// when the value has come back by "Hysteresis", so that a value that trembles at the limit fires once. Without any
// limit every change fires and nothing ever ends.
#pragma once

#include <optional>

#include "host/host_trigger.h"

namespace brindle::host {

class MeterValueTrigger final : public DeviceTrigger<MeterValueTrigger> {
  public:
    static constexpr const char* kTypeName = "MeterValueTrigger";
    static constexpr const char* kTypeText = "Meter Value Trigger";

    bool IsKind(const CStateEvent& event) const noexcept;
    std::vector<std::string> Conflicts() const override;

  private:
    ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) override;
    void DeviceAttributes(AttributeTable& table) override;

    bool IsOutside(double value, double margin) const noexcept;

    std::optional<double> m_above;
    std::optional<double> m_below;
    std::optional<double> m_hysteresis;
};

}  // namespace brindle::host
