// PollPlan: what devices.ini says about the polling of one device: its SNMP agent, how often it is asked, and
// which field each variable of the agent fills. docs/sites.md has the keys.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/ini_text.h"
#include "host/problem.h"

namespace brindle::host {

struct PollRange {
    int lowest;
    int highest;
};
constexpr PollRange kPollPeriods{100, 86'400'000};  // milliseconds
constexpr PollRange kPollTimeouts{1, 600'000};      // milliseconds
constexpr PollRange kPollRetries{0, 100};

struct PollField {
    std::string name;  // as it is written; "State" and "Value" also make events
    std::string oid;

    friend bool operator==(const PollField&, const PollField&) = default;
};

struct PollPlan {
    std::uint32_t address = 0;  // of the device, packed
    std::string agent;
    std::string community = "public";
    int period = 0;      // milliseconds
    int timeout = 1000;  // milliseconds
    int retries = 1;
    std::vector<PollField> fields;
    std::map<int, int>
        states;  // the device's state for a value of the field State; others are the state themselves
    std::optional<int> noAnswer;  // the state of a device that does not answer; nothing: it keeps its state

    friend bool operator==(const PollPlan&, const PollPlan&) = default;
};

// The field's name in a key "Poll.NAME"; empty for any other key.
std::string_view PolledField(std::string_view key) noexcept;

// The polls of all devices of a devices.ini; problems name `file`. Sections that are no device are passed
// over.
std::vector<PollPlan> ReadPollPlans(const IniText& ini, const std::string& file, Problems& problems);

}  // namespace brindle::host
