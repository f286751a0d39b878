// EventLine: one line of a recording: a JSON object that says what happens, when, and to which device or
// object. docs/sites.md has the table of keys.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/address/state_event.h>
#include <brindle/framework/string_a.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brindle::host {

enum class EventKind { kState, kButton, kCheckBox, kCaption, kMeter, kZone, kPoll, kUnlock, kEnd };

// The word of a kind in event lines and output lines.
const char* EventKindName(EventKind kind) noexcept;

struct EventLine {
    static constexpr std::uint64_t kLatest = 3'155'760'000'000;  // milliseconds, 100 years

    EventKind kind = EventKind::kState;
    EventKind asked = EventKind::kButton;  // kUnlock: the event the question is about
    std::optional<std::uint64_t> t;        // milliseconds from the start of the run
    std::string object;                    // empty: every object
    CAddressOv address;
    bool masked = false;
    int state = 0;
    CStringA header;
    CStringA cause;
    CStringA text;
    CStringA user;
    CStringA key;
    CStringA keyValue;
    float value = 0;
    int zone = 0;
    bool toggle = false;
    bool checked = false;
};

// Reads one line (UTF-8). Returns why it is no event, or an empty text; on failure `event` is unspecified.
// A line of any content is safe; the time is linear in its length.
std::string ParseEventLine(std::string_view line, EventLine& event);

// The event a line stands for; for kUnlock the one it asks about, for kEnd null. An event without an address
// gets `defaultAddress`. The caller owns the reference.
CStateEvent* MakeEvent(const EventLine& line, const CAddressOv& defaultAddress);

}  // namespace brindle::host
