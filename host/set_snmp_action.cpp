// The set-SNMP action. Tests: snmp_run_test.cpp.
#include "host/set_snmp_action.h"

namespace brindle::host {

namespace {

// Types whose values can be written as a text, and their tags.
struct Type {
    const char* word;
    std::int16_t tag;
};
constexpr Type kTypes[] = {{"STRING", 4},     {"INTEGER", 2},     {"OID", 6},
                           {"COUNTER32", 65}, {"GAUGE32", 66},    {"TIMETICKS", 67},
                           {"COUNTER64", 70}, {"UINTEGER32", 71}, {"NULL", 5}};

std::vector<std::string> Words() {
    std::vector<std::string> words;
    for (const Type& type : kTypes) words.emplace_back(type.word);
    return words;
}

}  // namespace

void SetSnmpAction::OwnAttributes(AttributeTable& table) {
    m_asking.AppendTarget(table);
    table.push_back(ChoiceAttribute("Type", m_type, Words()));
    table.push_back(FormattedAttribute("Value", m_value));
    m_asking.AppendTiming(table);
}

void SetSnmpAction::Perform(HostContext& context, const CCommandEvent* event) {
    std::optional<SnmpRequest> request = m_asking.Request(context, *this, event, "WriteCommunity");
    if (!request) return;
    request->what = SnmpRequest::kSet;
    request->variable.type = kTypes[m_type].tag;
    request->variable.value = FormatSnmpText(context, *this, m_value, event);
    context.AskSnmp(*this, *request, VariableTarget::kNearest, {});
}

}  // namespace brindle::host
