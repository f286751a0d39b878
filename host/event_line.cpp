// Event lines: JSON into events. Every key has one reader in a table that also says to which kinds it
// belongs; a key that is unknown, or means nothing for the kind, makes the line bad, because a misspelled key
// that is silently ignored is the hardest mistake to find in a recording.
// Tests: event_line_test.cpp, fuzz/event_line_fuzz.cpp.
#include "host/event_line.h"

#include <brindle/address/events.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "host/address_pattern.h"
#include "host/host_files.h"

namespace brindle::host {

namespace {

using nlohmann::json;

constexpr const char* kKindNames[] = {"state", "button", "checkbox", "caption", "meter",
                                      "zone",  "poll",   "unlock",   "end"};

constexpr unsigned Bit(EventKind kind) noexcept {
    return 1U << static_cast<unsigned>(kind);
}
constexpr unsigned kDeviceKinds = Bit(EventKind::kUnlock) - 1;  // all in front of it
constexpr unsigned kEvery = ~0U;

bool FindKind(const json& value, EventKind& kind) {
    if (!value.is_string()) return false;
    const auto& name = value.get_ref<const std::string&>();
    for (std::size_t i = 0; i < std::size(kKindNames); ++i) {
        if (name != kKindNames[i]) continue;
        kind = static_cast<EventKind>(i);
        return true;
    }
    return false;
}

bool ReadText(const json& value, CStringA& text) {
    if (value.is_string()) text = TextFromUtf8(value.get_ref<const std::string&>());
    return value.is_string();
}

bool ReadFlag(const json& value, bool& flag) {
    if (value.is_boolean()) flag = value.get<bool>();
    return value.is_boolean();
}

bool ReadInt(const json& value, int& number) {
    if (!value.is_number_integer()) return false;
    if (value.is_number_unsigned()) {
        if (value.get<std::uint64_t>() > std::numeric_limits<int>::max()) return false;
    } else if (value.get<std::int64_t>() < std::numeric_limits<int>::min()) {
        return false;
    }
    number = value.get<int>();
    return true;
}

bool ReadTime(const json& value, EventLine& event) {
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > EventLine::kLatest) return false;
    event.t = value.get<std::uint64_t>();
    return true;
}

bool ReadValue(const json& value, EventLine& event) {
    if (!value.is_number()) return false;
    const double number = value.get<double>();
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) return false;
    event.value = static_cast<float>(number);
    return true;
}

bool ReadAddress(const json& value, EventLine& event) {
    if (!value.is_string()) return false;
    CAddressOv address;
    if (!address.SetAddress(value.get_ref<const std::string&>().c_str())) return false;
    event.address = address;
    return true;
}

bool ReadObject(const json& value, EventLine& event) {
    CStringA name;
    if (!ReadText(value, name) || name.IsEmpty()) return false;
    event.object = name.str();
    return true;
}

struct KeyReader {
    const char* name;
    unsigned kinds;
    const char* expects;
    bool (*read)(const json& value, EventLine& event);
};

template <CStringA EventLine::*kField>
bool Text(const json& value, EventLine& event) {
    return ReadText(value, event.*kField);
}

constexpr KeyReader kKeys[] = {
    {"t", kEvery, "milliseconds from the start, a whole number", ReadTime},
    {"kind", kEvery, "a kind of event", [](const json&, EventLine&) { return true; }},
    {"note", kEvery, "a text", [](const json& v, EventLine&) { return v.is_string(); }},
    {"event", Bit(EventKind::kUnlock), "a kind of device event",
     [](const json& v, EventLine& e) { return FindKind(v, e.asked) && e.asked < EventKind::kUnlock; }},
    {"object", kDeviceKinds, "the name of an object", ReadObject},
    {"address", kDeviceKinds, "an address such as \"0001:02:03\"", ReadAddress},
    {"masked", kDeviceKinds, "true or false",
     [](const json& v, EventLine& e) { return ReadFlag(v, e.masked); }},
    {"state", kDeviceKinds, "a 32-bit whole number",
     [](const json& v, EventLine& e) { return ReadInt(v, e.state); }},
    {"header", kDeviceKinds, "a text", Text<&EventLine::header>},
    {"cause", kDeviceKinds, "a text", Text<&EventLine::cause>},
    {"text", kDeviceKinds, "a text", Text<&EventLine::text>},
    {"user", kDeviceKinds, "a text", Text<&EventLine::user>},
    {"key", kDeviceKinds, "a text", Text<&EventLine::key>},
    {"keyValue", kDeviceKinds, "a text", Text<&EventLine::keyValue>},
    {"value", Bit(EventKind::kMeter), "a number", ReadValue},
    {"zone", Bit(EventKind::kZone), "a 32-bit whole number",
     [](const json& v, EventLine& e) { return ReadInt(v, e.zone); }},
    {"toggle", Bit(EventKind::kButton), "true or false",
     [](const json& v, EventLine& e) { return ReadFlag(v, e.toggle); }},
    {"checked", Bit(EventKind::kCheckBox), "true or false",
     [](const json& v, EventLine& e) { return ReadFlag(v, e.checked); }},
};

const KeyReader* FindKey(const std::string& name) noexcept {
    for (const KeyReader& key : kKeys)
        if (name == key.name) return &key;
    return nullptr;
}

// The keys a kind cannot do without.
const char* MissingKey(EventKind kind, const json& line) {
    const auto needs = [&line](const char* key) { return line.contains(key) ? nullptr : key; };
    switch (kind) {
        case EventKind::kState:
            return needs("state");
        case EventKind::kCheckBox:
            return needs("checked");
        case EventKind::kCaption:
            return needs("text");
        case EventKind::kMeter:
            return needs("value");
        case EventKind::kZone:
            return needs("zone");
        default:
            return nullptr;
    }
}

// Names and texts of a line are shown only as far as they are plain and short.
std::string Quoted(const std::string& text) {
    return json(text.substr(0, 40)).dump(-1, ' ', true, json::error_handler_t::replace);
}

std::string ReadKeys(const json& line, EventLine& event) {
    unsigned kinds = Bit(event.kind);
    if (event.kind == EventKind::kUnlock) {
        event.asked = EventKind::kButton;
        if (line.contains("event") && !FindKey("event")->read(line["event"], event))
            return "key \"event\" is not a kind of device event";
        kinds |= Bit(event.asked);
    }
    for (const auto& [name, value] : line.items()) {
        const KeyReader* key = FindKey(name);
        if (!key) return "key " + Quoted(name) + " is unknown";
        if ((key->kinds & kinds) == 0)
            return "key \"" + name + "\" means nothing for kind \"" + EventKindName(event.kind) + "\"";
        if (!key->read(value, event)) return "key \"" + name + "\" is not " + key->expects;
    }
    return {};
}

}  // namespace

const char* EventKindName(EventKind kind) noexcept {
    return kKindNames[static_cast<std::size_t>(kind)];
}

std::string ParseEventLine(std::string_view text, EventLine& event) {
    const json line = json::parse(text, nullptr, false);
    if (line.is_discarded()) return "is not JSON";
    if (!line.is_object()) return "is not a JSON object";
    if (!line.contains("kind")) return "key \"kind\" is missing";
    event = EventLine();
    if (!FindKind(line["kind"], event.kind)) return "key \"kind\" is not a kind of event";
    std::string why = ReadKeys(line, event);
    if (!why.empty()) return why;
    const EventKind kind = event.kind == EventKind::kUnlock ? event.asked : event.kind;
    if (const char* missing = MissingKey(kind, line))
        return "key \"" + std::string(missing) + "\" is missing";
    if (event.kind == EventKind::kUnlock && event.object.empty()) return "key \"object\" is missing";
    if (kind <= EventKind::kZone && !line.contains("object") && !line.contains("address"))
        return "neither \"object\" nor \"address\" is given";
    return {};
}

CStateEvent* MakeEvent(const EventLine& line, const CAddressOv& defaultAddress) {
    const CAddressOv& address = AddressText(line.address).empty() ? defaultAddress : line.address;
    const auto make = [&]<class Event, class... First>(std::type_identity<Event>, First... first) {
        return new Event(first..., address, line.masked, line.state, line.header, line.cause, line.text,
                         line.user, line.key, line.keyValue);
    };
    switch (line.kind == EventKind::kUnlock ? line.asked : line.kind) {
        case EventKind::kState:
            return make(std::type_identity<CStateChangedEvent>());
        case EventKind::kCheckBox:
            if (line.checked) return make(std::type_identity<CCheckBoxCheckedPressEvent>());
            return make(std::type_identity<CCheckBoxUnCheckedPressEvent>());
        case EventKind::kCaption:
            return make(std::type_identity<CCaptionChangedEvent>());
        case EventKind::kMeter:
            return make(std::type_identity<CMeterValueChangeEvent>(), line.value);
        case EventKind::kZone:
            return make(std::type_identity<CMeterZoneChangeEvent>(), line.zone);
        case EventKind::kPoll:
            return make(std::type_identity<CPollEvent>());
        case EventKind::kButton: {
            auto* button = make(std::type_identity<CButtonPressEvent>());
            button->setToggleState(line.toggle);
            return button;
        }
        default:
            return nullptr;
    }
}

}  // namespace brindle::host
