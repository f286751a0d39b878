// Polls of a run. Tests: snmp_run_test.cpp.
#include "host/station_polls.h"

#include <algorithm>
#include <utility>

#include "host/address_pattern.h"
#include "host/event_line.h"
#include "host/host_files.h"
#include "host/words.h"

namespace brindle::host {

namespace {

CAddressOv AddressOf(const PollPlan& plan) {
    return CAddressOv(static_cast<unsigned long>(plan.address));
}

EventLine LineOf(EventKind kind, const PollPlan& plan) {
    EventLine line;
    line.kind = kind;
    line.address = AddressOf(plan);
    return line;
}

bool IsOneOf(std::string_view name, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [name](const char* word) { return SameWord(name, word); });
}

}  // namespace

StationPolls::StationPolls(RunState& state, SnmpRequests& requests, Deliver deliver)
    : m_state(state), m_requests(requests), m_deliver(std::move(deliver)) {
    Replace(state.site.polls);
}

std::size_t StationPolls::Replace(const std::vector<PollPlan>& plans) {
    const auto before = std::exchange(m_polls, {});
    std::size_t kept = 0;
    for (const PollPlan& plan : plans) {
        const auto old = std::find_if(before.begin(), before.end(),
                                      [&](const auto& poll) { return poll->plan.address == plan.address; });
        if (old != before.end() && (*old)->plan == plan) {
            m_polls.push_back(*old);
            ++kept;
            continue;
        }
        auto poll = std::make_shared<Poll>();
        poll->plan = plan;
        poll->due = m_state.pace.Elapsed();
        if (old != before.end()) {
            poll->why = (*old)->why;
            poll->state = (*old)->state;
            poll->meter = (*old)->meter;
        }
        m_polls.push_back(std::move(poll));
    }
    return std::max(before.size(), plans.size()) - kept;
}

std::optional<std::uint64_t> StationPolls::NextDue() const {
    const auto next = std::min_element(m_polls.begin(), m_polls.end(),
                                       [](const auto& a, const auto& b) { return a->due < b->due; });
    if (next == m_polls.end()) return {};
    return (*next)->due;
}

void StationPolls::SendDue() {
    const std::uint64_t now = m_state.pace.Elapsed();
    for (const auto& poll : m_polls) {
        if (poll->due > now) continue;
        const auto period = static_cast<std::uint64_t>(poll->plan.period);
        poll->due += ((now - poll->due) / period + 1) * period;
        if (poll->pending == 0) Ask(poll);
    }
}

void StationPolls::Ask(const std::shared_ptr<Poll>& poll) {
    poll->answers = {};
    poll->pending = poll->plan.fields.size();
    for (const PollField& field : poll->plan.fields) {
        SnmpRequest request;
        request.variable.agent = poll->plan.agent;
        request.variable.community = poll->plan.community;
        request.variable.oid = field.oid;
        request.timeout = poll->plan.timeout;
        request.retries = poll->plan.retries;
        const std::weak_ptr<Poll> asked = poll;
        m_requests.Send(std::move(request), [this, asked, name = field.name](const SnmpAnswer& answer) {
            if (const auto waiting = asked.lock()) Take(*waiting, name, answer);
        });
    }
}

void StationPolls::Take(Poll& poll, const std::string& field, const SnmpAnswer& answer) {
    if (answer.why.empty())
        poll.answers.values[field] = answer.variable.value.str();
    else
        poll.answers.failures[field] = answer.why;
    if (--poll.pending == 0) Complete(poll);
}

// Answers come in any order; what is said of them does not depend on it.
std::string StationPolls::FirstFailure(const PollPlan& plan, const Answers& answers) {
    for (const PollField& field : plan.fields)
        if (const auto failure = answers.failures.find(field.name); failure != answers.failures.end())
            return field.name + ": " + failure->second;
    return {};
}

// The next poll may begin in a dialog that opens while this one is told.
void StationPolls::Complete(Poll& poll) {
    const Answers answers = std::exchange(poll.answers, {});
    const std::string before = std::exchange(poll.why, FirstFailure(poll.plan, answers));
    RunRecord changes = RunRecord::object();
    bool textsChanged = false;
    for (const auto& [name, value] : answers.values) {
        if (IsOneOf(name, {"State"})) continue;
        if (!m_state.site.devices.SetField(poll.plan.address, name, value)) continue;
        changes[TextToUtf8(name)] = TextToUtf8(value);
        textsChanged = textsChanged || IsOneOf(name, {"Header", "Cause", "Text", "User"});
    }
    if (!changes.empty() || poll.why != before || m_state.trace) WriteRecord(poll, changes);
    TellState(poll, answers, textsChanged);
    TellMeter(poll, answers);
    if (!answers.values.empty()) m_deliver(MakeEvent(LineOf(EventKind::kPoll, poll.plan), {}));
}

void StationPolls::WriteRecord(const Poll& poll, const RunRecord& changes) {
    RunRecord record = m_state.Begin("snmp");
    record["what"] = "poll";
    const std::string device = m_state.site.devices.Caption(poll.plan.address);
    if (!device.empty()) record["device"] = TextToUtf8(device);
    record["address"] = AddressText(AddressOf(poll.plan));
    record["agent"] = TextToUtf8(poll.plan.agent);
    if (!changes.empty()) record["values"] = changes;
    if (!poll.why.empty()) record["why"] = TextToUtf8(poll.why);
    m_state.sink.Write(record);
}

// The state that the poll's answers mean; nothing when they say nothing about it.
std::optional<int> StationPolls::StateOf(const PollPlan& plan, const Answers& answers) {
    if (answers.values.empty()) return plan.noAnswer;
    for (const auto& [name, value] : answers.values) {
        int number = 0;
        if (!IsOneOf(name, {"State"}) || !ParseInt(value, number)) continue;
        const auto mapped = plan.states.find(number);
        return mapped == plan.states.end() ? number : mapped->second;
    }
    return {};
}

void StationPolls::TellState(Poll& poll, const Answers& answers, bool textsChanged) {
    const std::optional<int> state = StateOf(poll.plan, answers);
    if (!state || (state == poll.state && !textsChanged)) return;
    poll.state = state;
    const auto field = [&](const char* name) {
        std::string value;
        m_state.site.devices.Field(poll.plan.address, name, value);
        return CStringA(value);
    };
    EventLine line = LineOf(EventKind::kState, poll.plan);
    line.state = *state;
    line.header = field("Header");
    line.cause = field("Cause");
    line.text = answers.values.empty() ? CStringA(poll.why) : field("Text");
    line.user = field("User");
    m_deliver(MakeEvent(line, {}));
}

void StationPolls::TellMeter(Poll& poll, const Answers& answers) {
    for (const auto& [name, value] : answers.values) {
        double number = 0;
        if (!IsOneOf(name, {"Value"}) || !ParseReal(value, number) || poll.meter == number) continue;
        poll.meter = number;
        EventLine line = LineOf(EventKind::kMeter, poll.plan);
        line.value = static_cast<float>(number);
        m_deliver(MakeEvent(line, {}));
    }
}

}  // namespace brindle::host
