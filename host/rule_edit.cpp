// Rules while they are written. Tests: rule_edit_test.cpp.
#include "host/rule_edit.h"

#include <algorithm>
#include <set>

#include "host/address_pattern.h"
#include "host/device_table.h"
#include "host/rule_check.h"
#include "host/rule_text.h"

namespace brindle::host {

namespace {

using Literal = CCalculator::Literal;

std::string Shown(const std::string& text, std::size_t most) {
    return text.size() <= most ? text : text.substr(0, most) + " ...";
}

// The evaluation would take too long to be done at every key.
struct TooMuch {};

// Answers a rule from the devices and counts the texts it is made of. Patterns of the language take time in proportion
// to the product of two texts, so it is their sum that is bounded.
class CountedFields final : public CSolverData, public RuleObserver {
  public:
    CountedFields(const DeviceTable& devices, const CAddressOv& own, std::size_t most)
        : m_devices(devices), m_own(own), m_left(most) {}

    bool Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const override {
        const CAddressOv& device = address ? *address : m_own;
        std::string text;
        if (device.IsDeferred() || !m_devices.Field(device.GetDWord(), header.view(), text)) return false;
        Take(text.size());
        value = text;
        return true;
    }
    void OnValue(const CStringA&, const CStringA*, const Literal&) override {}
    void OnOperator(const CCalculator::Operator&, const Literal*, const Literal&,
                    const Literal& result) override {
        if (result.GetType() == Literal::String) Take(result.AsString().size());
    }
    void OnFunction(const CCalculator::Function&, const Literal&) override {}

  private:
    void Take(std::size_t bytes) const {
        if (bytes > m_left) throw TooMuch();
        m_left -= bytes;
    }

    const DeviceTable& m_devices;
    const CAddressOv& m_own;
    mutable std::size_t m_left;
};

}  // namespace

RuleEdit::RuleEdit(const DeviceTable& devices, const CAddressOv& own) : m_devices(devices), m_own(own) {
    SetText({});
}

void RuleEdit::SetText(std::string_view text) {
    m_text = text;
    const bool tooLong = m_text.size() > kLongestRule;
    m_rule = tooLong ? PreparedRule() : PreparedRule(CStringA(m_text));
    m_fault = m_rule.Structure();
    if (tooLong)
        m_fault = Result::Error(ErrorCode::kLimit,
                                "the rule is longer than " + std::to_string(kLongestRule) + " bytes");
    m_reversePolish = IsValid() ? Shown(m_rule.ReversePolish().str(), 16 * kLongestShown) : std::string();
    FindNames();
    const std::vector<RuleEditName> before = std::exchange(m_names, {});
    for (const std::size_t index : m_indices) m_names.push_back(Answered(index, before));
    m_now = Evaluated();
}

bool RuleEdit::Refresh() {
    std::vector<RuleEditName> names;
    for (const std::size_t index : m_indices) names.push_back(Answered(index, m_names));
    RuleEditResult now = Evaluated();
    const bool changed = names != m_names || now != m_now;
    m_names = std::move(names);
    m_now = std::move(now);
    return changed;
}

void RuleEdit::FindNames() {
    m_indices.clear();
    m_moreNames = 0;
    std::set<std::string> found;
    const std::size_t count = IsValid() ? m_rule.NameCount() : 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (!found.insert(NameText(m_rule, i)).second) continue;
        if (m_indices.size() < kMostNames)
            m_indices.push_back(i);
        else
            ++m_moreNames;
    }
}

// Why nobody answers takes a look at every device: what was found `before` holds as long as nobody does.
RuleEditName RuleEdit::Answered(std::size_t index, const std::vector<RuleEditName>& before) const {
    RuleEditName name;
    name.text = Shown(NameText(m_rule, index), kLongestShown);
    const std::optional<std::uint32_t> device = DeviceOfName(m_rule, index, m_own);
    if (device) name.device = AddressText(CAddressOv(static_cast<unsigned long>(*device)));
    std::string value;
    if (device && m_devices.Field(*device, m_rule.Name(index).view(), value)) {
        Literal literal;
        literal.SetValue(value);
        name.type = LiteralTypeName(literal.GetType());
        name.value = Shown(value, kLongestShown);
        return name;
    }
    name.type = LiteralTypeName(Literal::String);
    name.value = Shown(m_rule.Name(index).str(), kLongestShown);
    const auto same = [&](const RuleEditName& known) {
        return known.text == name.text && !known.why.empty();
    };
    const auto known = std::find_if(before.begin(), before.end(), same);
    name.why = known != before.end()
                   ? known->why
                   : Shown(ProblemOfName(m_rule, index, m_own, m_devices), 2 * kLongestShown);
    return name;
}

RuleEditResult RuleEdit::Evaluated() const {
    RuleEditResult now;
    if (!IsValid()) return now;
    const std::size_t most = kMostEvaluated - std::min(m_text.size(), kMostEvaluated);
    Literal result;
    try {
        if (most == 0) throw TooMuch();
        CountedFields fields(m_devices, m_own, most);
        if (!m_rule.Solve(fields, result, &fields)) return now;
    } catch (const TooMuch&) {
        now.why = "it is too long to be evaluated at every key";
        return now;
    }
    now.type = LiteralTypeName(result.GetType());
    now.value = Shown(result.AsString(), kLongestShown);
    now.holds = Holds(result);
    return now;
}

}  // namespace brindle::host
