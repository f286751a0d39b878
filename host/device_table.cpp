// The simulated devices of a site. Tests: site_test.cpp.
#include "host/device_table.h"

#include <brindle/address/events.h>

#include <algorithm>

#include "host/address_pattern.h"
#include "host/poll_plan.h"
#include "host/words.h"

namespace brindle::host {

namespace {

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

std::uint32_t Packed(const FullAddress_t& address) noexcept {
    return std::uint32_t{address.net} << 16 | std::uint32_t{address.unit} << 8 | address.port;
}

const char* ColourName(int state) noexcept {
    if (state < 1) return "Black";
    return state == 1 ? "Green" : state == 2 ? "Yellow" : "Red";
}

}  // namespace

void DeviceTable::Load(const IniText& ini, const std::string& file, Problems& problems) {
    for (const IniSection& section : ini.Sections()) LoadDevice(section, file, problems);
}

void DeviceTable::LoadDevice(const IniSection& section, const std::string& file, Problems& problems) {
    CAddressOv address;
    if (!address.SetAddress(section.name.c_str()) || address.IsDeferred()) {
        problems.push_back(
            {file, section.line, 1, "[" + section.name + "] is not a full address such as 0001:02:03"});
        return;
    }
    FullAddress_t parts{};
    address.GetFullAddressStruct(parts);
    Device& device = m_devices[Packed(parts)];
    for (const IniKey& key : section.keys) {
        if (const auto member = TextField(key.name)) {
            device.*member = key.value;
        } else if (SameWord(key.name, "State")) {
            if (!ParseInt(key.value, device.state))
                problems.push_back({file, key.line, 1, "\"" + key.value + "\" is not a state number"});
        } else if (SameWord(key.name, "Polled")) {
            continue;  // of the polls
        } else if (const std::string_view polled = PolledField(key.name); !polled.empty()) {
            if (!TextField(polled) && !SameWord(polled, "State"))
                device.fields.try_emplace(LowerCase(polled));
        } else {
            device.fields[LowerCase(key.name)] = key.value;
        }
    }
}

DeviceTable::Change DeviceTable::Take(const CStateEvent& event) {
    const auto found = m_devices.find(event.GetAddress().GetDWord());
    if (found == m_devices.end() || event.GetAddress().IsDeferred()) return Change::kSomething;
    Device& device = found->second;
    if (dynamic_cast<const CStateChangedEvent*>(&event)) return TakeState(device, event);
    if (dynamic_cast<const CCaptionChangedEvent*>(&event)) device.caption = event.GetStateDueToString().str();
    if (const auto* meter = dynamic_cast<const CMeterValueChangeEvent*>(&event))
        device.value = RealText(meter->GetValue());
    if (const auto* meter = dynamic_cast<const CMeterZoneChangeEvent*>(&event))
        device.zone = std::to_string(meter->GetZone());
    return Change::kSomething;
}

DeviceTable::Change DeviceTable::TakeState(Device& device, const CStateEvent& event) {
    Change change = Change::kNothing;
    const auto update = [&change](std::string& field, const CStringA& value) {
        if (field == value.str()) return;
        field = value.str();
        change = Change::kSomething;
    };
    update(device.header, event.GetStateDueToHeader());
    update(device.cause, event.GetStateDueToCauseHeader());
    update(device.text, event.GetStateDueToString());
    update(device.user, event.GetUserString());
    if (!device.seen || device.state != event.GetState() || device.masked != event.IsMasked())
        change = Change::kSomething;
    device.seen = true;
    device.state = event.GetState();
    device.masked = event.IsMasked();
    return change;
}

std::string DeviceTable::Device::*DeviceTable::TextField(std::string_view name) noexcept {
    struct Field {
        const char* name;
        std::string Device::*member;
    };
    constexpr Field kFields[] = {{"Name", &Device::name},     {"Caption", &Device::caption},
                                 {"Header", &Device::header}, {"Cause", &Device::cause},
                                 {"Text", &Device::text},     {"User", &Device::user},
                                 {"Value", &Device::value},   {"Zone", &Device::zone}};
    for (const Field& field : kFields)
        if (SameWord(field.name, name)) return field.member;
    return nullptr;
}

bool DeviceTable::FieldValue(const Device& device, std::string_view name, std::string& value) {
    if (const auto field = device.fields.find(LowerCase(name)); field != device.fields.end()) {
        value = field->second;
    } else if (SameWord(name, "Caption") && device.caption.empty()) {
        value = device.name;
    } else if (const auto member = TextField(name)) {
        value = device.*member;
    } else if (SameWord(name, "State")) {
        value = std::to_string(device.state);
    } else if (SameWord(name, "Colour")) {
        value = ColourName(device.state);
    } else if (SameWord(name, "Masked")) {
        value = device.masked ? "TRUE" : "FALSE";
    } else {
        return false;
    }
    return true;
}

bool DeviceTable::Field(std::uint32_t packedAddress, std::string_view name, std::string& value) const {
    const auto found = m_devices.find(packedAddress);
    return found != m_devices.end() && FieldValue(found->second, name, value);
}

bool DeviceTable::SetField(std::uint32_t packedAddress, std::string_view name, const std::string& value) {
    const auto found = m_devices.find(packedAddress);
    if (found == m_devices.end() || SameWord(name, "State")) return false;
    const auto member = TextField(name);
    std::string& field = member ? found->second.*member : found->second.fields[LowerCase(name)];
    if (field == value) return false;
    field = value;
    return true;
}

std::vector<std::uint32_t> DeviceTable::Addresses() const {
    std::vector<std::uint32_t> addresses;
    for (const auto& entry : m_devices) addresses.push_back(entry.first);
    return addresses;
}

bool DeviceTable::KnowsField(std::uint32_t packedAddress, std::string_view name) const {
    std::string unused;
    return Field(packedAddress, name, unused);
}

bool DeviceTable::KnowsFieldSomewhere(std::string_view name) const {
    std::string unused;
    return FieldValue(Device(), name, unused) ||
           std::any_of(m_devices.begin(), m_devices.end(),
                       [&](const auto& entry) { return FieldValue(entry.second, name, unused); });
}

std::string DeviceTable::Caption(std::uint32_t packedAddress) const {
    const auto found = m_devices.find(packedAddress);
    if (found == m_devices.end()) return {};
    return found->second.caption.empty() ? found->second.name : found->second.caption;
}

int DeviceTable::GetAddressStatus(const FullAddress_t* address) {
    const auto found = address ? m_devices.find(Packed(*address)) : m_devices.end();
    return found == m_devices.end() ? 0 : found->second.state;
}

CStringA DeviceTable::GetHashFieldValue(const FullAddress_t* address, const char* fieldName) {
    const auto found = address ? m_devices.find(Packed(*address)) : m_devices.end();
    if (found == m_devices.end()) return {};
    std::string value;
    FieldValue(found->second, fieldName ? fieldName : "", value);
    return value;
}

void DeviceTable::WriteCommandLog(const char*) {}

int DeviceTable::SelectActions(CCommandBehaviourList& list, int selection, brindle::eHostType host) {
    return m_chooser ? m_chooser(list, selection, host) : 0;
}

}  // namespace brindle::host
