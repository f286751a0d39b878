// RuleTrigger: fires when its rule over the fields of devices turns true, ends when it turns false. A name without
// address is a field of the object's own device.
//
// The rule is evaluated at every event that may change a field (states, captions, meter values and zones of any
// device), at polls, because a rule may depend on the time, and when the run begins, so that a rule that is true
// already fires. Buttons and check boxes change no field. A rule that cannot be evaluated is false and told once a
// run; a result without a meaning, the empty text, is false too.
#pragma once

#include <optional>

#include "host/host_trigger.h"
#include "host/rule_text.h"

namespace brindle::host {

// A name of a rule and what it stood for.
struct SeenValue {
    std::string address;               // of the device; empty when the object has none
    std::string name;                  // as the rule writes it
    std::optional<std::string> value;  // none: nobody knows the name, it stands for itself

    auto operator<=>(const SeenValue&) const = default;
};

class RuleTrigger final : public HostTrigger<RuleTrigger, CCommandTrigger> {
  public:
    static constexpr const char* kTypeName = "RuleTrigger";
    static constexpr const char* kTypeText = "Rule Trigger";

    int Test(const CCommandEvent* event) override;
    // The condition has not ended and the rule, evaluated once more, is still true; whatever the event is.
    bool Retest(const CCommandEvent* event) const override;
    void Init() override;
    // Any change of a device may matter.
    bool HasConfig(const std::string& kind) const override;
    std::vector<std::string> Conflicts() const override;

    const PreparedRule& Rule() const noexcept { return m_rule.Rule(); }
    // The values behind the last verdict, each once, in the order of the rule; empty when the event did not concern the
    // rule. They are looked up by this call: ask before anything else happens.
    std::vector<SeenValue> Seen() const;

  private:
    void OwnAttributes(AttributeTable& table) override;
    bool IsTrue() const;
    void TellFault();

    RuleText m_rule;
    ConditionTracker m_tracker;  // of one condition, which belongs to no single device
    CAddressOv m_own;            // the object's address at the last evaluation
    bool m_evaluated = false;    // by the last Test
    bool m_told = false;
};

}  // namespace brindle::host
