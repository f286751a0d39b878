// The trigger on rules. Tests: rule_trigger_test.cpp, run_test.cpp.
#include "host/rule_trigger.h"

#include <set>

#include "host/address_pattern.h"
#include "host/start_event.h"

namespace brindle::host {

namespace {

// Answers a rule from the devices of the site; names without address from the object's own device.
class ObjectFields final : public CSolverData {
  public:
    explicit ObjectFields(const CAddressOv& own) noexcept : m_own(own), m_context(CurrentHostContext()) {}
    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override {
        const CAddressOv& device = address ? *address : m_own;
        return m_context && !device.IsDeferred() && m_context->DeviceField(device.GetDWord(), header, value);
    }

  private:
    const CAddressOv& m_own;
    const HostContext* m_context;
};

// Whether the values of a rule may be others after the event.
bool MayChangeValues(const CCommandEvent* event) {
    return dynamic_cast<const CStateChangedEvent*>(event) ||
           dynamic_cast<const CCaptionChangedEvent*>(event) ||
           dynamic_cast<const CMeterValueChangeEvent*>(event) ||
           dynamic_cast<const CMeterZoneChangeEvent*>(event) || dynamic_cast<const CPollEvent*>(event) ||
           dynamic_cast<const StartEvent*>(event);
}

}  // namespace

int RuleTrigger::Test(const CCommandEvent* event) {
    m_evaluated = MayChangeValues(event);
    if (!m_evaluated) return Answer(kNotConcerned, "another kind of event");
    if (const HostContext* context = CurrentHostContext()) m_own = context->ObjectAddress();
    if (!Rule().Structure().ok()) {
        m_evaluated = false;
        TellFault();
        return Answer(kNotConcerned, "the rule cannot be evaluated");
    }
    const ConditionTracker::Answer answer = m_tracker.Update(CAddressOv(), IsTrue(), false);
    return Answer(answer.verdict, answer.why);
}

bool RuleTrigger::Retest(const CCommandEvent*) const {
    return m_tracker.Holds(CAddressOv()) && IsTrue();
}

void RuleTrigger::Init() {
    m_tracker.Reset();
    m_own = CAddressOv();
    m_evaluated = false;
    m_told = false;
}

bool RuleTrigger::HasConfig(const std::string& kind) const {
    return kind == "StateTrigger" || kind == "StateTrigger::AnyChange";
}

std::vector<std::string> RuleTrigger::Conflicts() const {
    if (m_rule.Text().empty()) return {"\"Rule\" is missing or empty: it never fires"};
    if (Rule().Structure().ok()) return {};
    return {"attribute \"Rule\": " + m_rule.Fault()};
}

std::vector<SeenValue> RuleTrigger::Seen() const {
    std::vector<SeenValue> values;
    if (!m_evaluated) return values;
    const ObjectFields fields(m_own);
    std::set<SeenValue> listed;
    for (std::size_t i = 0; i < Rule().NameCount(); ++i) {
        const CAddressOv* address = Rule().NameAddress(i);
        SeenValue seen{AddressText(address ? *address : m_own), Rule().Name(i).str(), {}};
        CStringA value;
        if (fields.Lookup(Rule().Name(i), address, value)) seen.value = value.str();
        if (listed.insert(seen).second) values.push_back(std::move(seen));
    }
    return values;
}

void RuleTrigger::OwnAttributes(AttributeTable& table) {
    table.push_back(ParsedAttribute("Rule", "a rule such as 0001:02:03,State > 2", m_rule));
}

bool RuleTrigger::IsTrue() const {
    CCalculator::Literal result;
    return Rule().Solve(ObjectFields(m_own), result) && Holds(result);
}

void RuleTrigger::TellFault() {
    HostContext* context = CurrentHostContext();
    if (m_told || !context) return;
    m_told = true;
    context->ReportFault(*this, "the rule is never true: " + m_rule.Fault());
}

}  // namespace brindle::host
