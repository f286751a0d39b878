// Polls in devices.ini. Tests: snmp_run_test.cpp.
#include "host/poll_plan.h"

#include <brindle/address/address_ov.h>
#include <brindle/snmp/snmp.h>

#include "host/words.h"

namespace brindle::host {

namespace {

constexpr std::string_view kPrefix = "Poll.";
constexpr int kObjectIdentifier = 6;

class PollReader {
  public:
    PollReader(const IniSection& section, const std::string& file, Problems& problems)
        : m_section(section), m_file(file), m_problems(problems) {}

    // Nothing when the device is not polled.
    std::optional<PollPlan> Read(std::uint32_t address) {
        m_plan.address = address;
        Text("Agent", m_plan.agent);
        Text("Community", m_plan.community);
        Number("Poll", kPollPeriods.lowest, kPollPeriods.highest, m_plan.period);
        Number("Timeout", kPollTimeouts.lowest, kPollTimeouts.highest, m_plan.timeout);
        Number("Retries", kPollRetries.lowest, kPollRetries.highest, m_plan.retries);
        const bool polled = Polled();
        int state = 0;
        if (Number("NoAnswer", INT32_MIN, INT32_MAX, state)) m_plan.noAnswer = state;
        States();
        for (const IniKey& key : m_section.keys) Field(key);
        if (!IsWhole() || !polled) return {};
        return m_plan;
    }

  private:
    void Problem(std::uint32_t line, std::string text) {
        m_problems.push_back({m_file, line, 1, std::move(text)});
    }

    void Text(std::string_view name, std::string& value) {
        if (const IniKey* key = m_section.Find(name)) value = key->value;
    }

    bool Number(std::string_view name, int lowest, int highest, int& value) {
        const IniKey* key = m_section.Find(name);
        if (!key) return false;
        int number = 0;
        if (!ParseInt(key->value, number) || number < lowest || number > highest) {
            Problem(key->line, std::string(name) + ": \"" + key->value + "\" is no number from " +
                                   std::to_string(lowest) + " to " + std::to_string(highest));
            return false;
        }
        value = number;
        return true;
    }

    bool Polled() {
        const IniKey* key = m_section.Find("Polled");
        if (!key || SameWord(key->value, "TRUE")) return true;
        if (!SameWord(key->value, "FALSE"))
            Problem(key->line, "Polled: \"" + key->value + "\" is not TRUE or FALSE");
        return false;
    }

    // "0:1, 5:3": value 0 is state 1, value 5 is state 3.
    void States() {
        const IniKey* key = m_section.Find("PollStates");
        if (!key) return;
        for (const std::string_view pair : Split(key->value, ',')) {
            const std::size_t colon = pair.find(':');
            int value = 0;
            int state = 0;
            if (colon == std::string_view::npos || !ParseInt(Trimmed(pair.substr(0, colon)), value) ||
                !ParseInt(Trimmed(pair.substr(colon + 1)), state)) {
                Problem(key->line, "PollStates: \"" + std::string(pair) + "\" is no VALUE:STATE");
                continue;
            }
            m_plan.states[value] = state;
        }
    }

    void Field(const IniKey& key) {
        const std::string_view name = PolledField(key.name);
        if (name.empty()) return;
        if (KySnmpPlainValue(kObjectIdentifier, CStringA(key.value)).IsEmpty())
            Problem(key.line, key.name + ": \"" + key.value + "\" is no identifier in dotted numbers");
        else
            m_plan.fields.push_back({std::string(name), key.value});
        m_wanted = m_wanted ? m_wanted : key.line;
    }

    bool IsWhole() {
        const IniKey* poll = m_section.Find("Poll");
        if (poll && !m_wanted)
            Problem(poll->line, "Poll: nothing to ask for; \"Poll.NAME = IDENTIFIER\" is missing");
        if (m_wanted && !poll) Problem(m_wanted, "how often to ask is missing: \"Poll = MILLISECONDS\"");
        if (poll && m_plan.agent.empty())
            Problem(poll->line, "Poll: whom to ask is missing: \"Agent = HOST\"");
        return poll && m_plan.period > 0 && !m_plan.agent.empty() && !m_plan.fields.empty();
    }

    const IniSection& m_section;
    const std::string& m_file;
    Problems& m_problems;
    PollPlan m_plan;
    std::uint32_t m_wanted = 0;  // the line of the first "Poll.NAME"
};

}  // namespace

std::string_view PolledField(std::string_view key) noexcept {
    if (key.size() <= kPrefix.size() || !SameWord(key.substr(0, kPrefix.size()), kPrefix)) return {};
    return key.substr(kPrefix.size());
}

std::vector<PollPlan> ReadPollPlans(const IniText& ini, const std::string& file, Problems& problems) {
    std::vector<PollPlan> plans;
    for (const IniSection& section : ini.Sections()) {
        CAddressOv address;
        if (!address.SetAddress(section.name.c_str()) || address.IsDeferred()) continue;
        if (auto plan = PollReader(section, file, problems).Read(address.GetDWord()))
            plans.push_back(std::move(*plan));
    }
    return plans;
}

}  // namespace brindle::host
