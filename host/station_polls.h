// StationPolls: asks the SNMP agents of a site's devices, each in its own rhythm, and tells the station what
// they say. Values become fields of the device; a poll that has all its answers is followed by the events
// that tell of it: a state or a meter value that has changed, then the poll itself.
//
// A device that has not answered yet is not asked again. Thread: the run's.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/poll_plan.h"
#include "host/run_state.h"
#include "host/snmp_requests.h"

namespace brindle::host {

class StationPolls {
  public:
    // Takes over one reference of the event.
    using Deliver = std::function<void(const CStateEvent* event)>;

    StationPolls(RunState& state, SnmpRequests& requests, Deliver deliver);

    // When something is to be asked next, in milliseconds of the run; nothing when no device is polled.
    std::optional<std::uint64_t> NextDue() const;
    // Asks what is due.
    void SendDue();
    // Polls by other plans from now on. Devices whose plan is the same keep their rhythm and their answers on the way;
    // the others are asked anew, those no longer named not any more. Returns how many plans differ, come or go.
    std::size_t Replace(const std::vector<PollPlan>& plans);

  private:
    struct Answers {  // by field
        std::map<std::string, std::string> values;
        std::map<std::string, std::string> failures;  // why there is no value
    };
    struct Poll {
        PollPlan plan;
        std::uint64_t due = 0;
        std::size_t pending = 0;
        Answers answers;           // of the poll in progress
        std::string why;           // of the first of them in the order of the plan
        std::optional<int> state;  // as told last
        std::optional<double> meter;
    };
    void Ask(const std::shared_ptr<Poll>& poll);
    void Take(Poll& poll, const std::string& field, const SnmpAnswer& answer);
    static std::string FirstFailure(const PollPlan& plan, const Answers& answers);
    void Complete(Poll& poll);
    void TellState(Poll& poll, const Answers& answers, bool textsChanged);
    void TellMeter(Poll& poll, const Answers& answers);
    void WriteRecord(const Poll& poll, const RunRecord& changes);
    static std::optional<int> StateOf(const PollPlan& plan, const Answers& answers);

    RunState& m_state;
    SnmpRequests& m_requests;
    Deliver m_deliver;
    std::vector<std::shared_ptr<Poll>> m_polls;  // requests on the way know theirs while it is here
};

}  // namespace brindle::host
