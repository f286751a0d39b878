// Answers fields and states from the command line. Tests: tool_test.cpp.
#include "apps/brindle/field_answers.h"

#include <brindle/address/full_address.h>

#include "apps/brindle/cli_output.h"
#include "apps/brindle/cli_values.h"

namespace brindle::tool {
namespace {

// How closely an answer was meant for the address: 0 not at all, 1 given for all addresses, else 2 and one more
// for each part that is not open.
int Closeness(const CAddressOv& where, bool hasAddress, const FullAddress_t& address) {
    if (!hasAddress) return 1;
    FullAddress_t full{};
    where.GetFullAddressStruct(full, address);
    if (full.net != address.net || full.unit != address.unit || full.port != address.port) return 0;
    return 5 - where.IsNetDeferred() - where.IsUnitDeferred() - where.IsPortDeferred();
}

}  // namespace

void FieldAnswers::AddField(const std::string& text) {
    auto [name, value] = ToAssignment(text, "--field");
    Answer answer{{}, false, name, value, 0};
    const std::size_t comma = name.find(',');
    if (comma != std::string::npos && answer.where.SetAddress(name.substr(0, comma).c_str())) {
        answer.hasAddress = true;
        answer.name.erase(0, comma + 1);
    }
    m_fields.push_back(std::move(answer));
}

void FieldAnswers::AddState(const std::string& text) {
    const auto [address, state] = ToAssignment(text, "--device-status");
    m_states.push_back(
        {ToAddress(address, "--device-status"), true, "", "", ToNumber(state, "--device-status")});
}

const FieldAnswers::Answer* FieldAnswers::Best(const std::vector<Answer>& answers,
                                               const FullAddress_t& address, std::string_view name) {
    const Answer* best = nullptr;
    int closest = 1;
    for (const Answer& answer : answers) {
        if (answer.name != name) continue;
        const int closeness = Closeness(answer.where, answer.hasAddress, address);
        if (closeness < closest) continue;
        closest = closeness;
        best = &answer;
    }
    return best;
}

void FieldAnswers::Tell(const std::string& question, const FullAddress_t& address,
                        const std::string& answer) const {
    if (m_listener) m_listener(question + " at " + CAddressOv(address).GetString().str(), answer);
}

int FieldAnswers::GetAddressStatus(const FullAddress_t* address) {
    const Answer* answer = Best(m_states, *address, "");
    const int state = answer ? answer->state : 0;
    Tell("status", *address, std::to_string(state) + (answer ? "" : " (not given)"));
    return state;
}

CStringA FieldAnswers::GetHashFieldValue(const FullAddress_t* address, const char* fieldName) {
    const Answer* answer = Best(m_fields, *address, fieldName);
    Tell("field \"" + std::string(fieldName) + "\"", *address,
         answer ? "\"" + answer->value + "\"" : "nothing (not given)");
    return answer ? CStringA(answer->value) : CStringA();
}

}  // namespace brindle::tool
