// DeviceTable: the devices of a site as the run has seen them: what devices.ini says about them, and the last
// state, caption and meter readings that events reported. It answers the library's questions about status and
// "#" fields. Only devices of devices.ini and addresses somebody subscribed to are remembered, so that it
// does not grow with the events.
#pragma once

#include <brindle/address/state_event.h>
#include <brindle/macro/brindle_data.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/ini_text.h"
#include "host/problem.h"

namespace brindle::host {

class DeviceTable : public IBrindleData {
  public:
    virtual ~DeviceTable() = default;

    // Takes over the devices of a devices.ini; problems name `file`.
    void Load(const IniText& ini, const std::string& file, Problems& problems);
    // Remembers what events say about the address from now on.
    void Subscribe(std::uint32_t packedAddress) { m_devices.try_emplace(packedAddress); }

    enum class Change {
        kSomething,  // always for a device that is not remembered
        kNothing,    // the same report as the last one
    };
    // Takes the event over and says whether a state event brings anything new; any other event always does.
    Change Take(const CStateEvent& event);

    // The remembered ones, in the order of their numbers.
    std::vector<std::uint32_t> Addresses() const;
    bool Knows(std::uint32_t packedAddress) const { return m_devices.contains(packedAddress); }
    // Whether "#name#" has an answer at the address: a built-in field, or one that devices.ini gives it.
    bool KnowsField(std::uint32_t packedAddress, std::string_view name) const;
    // The field's value; false, and `value` unchanged, when KnowsField says no.
    bool Field(std::uint32_t packedAddress, std::string_view name, std::string& value) const;
    // Gives a device's field a value, "State" excepted, which only events change. True when it is another one
    // than before.
    bool SetField(std::uint32_t packedAddress, std::string_view name, const std::string& value);
    // Whether the field has an answer anywhere.
    bool KnowsFieldSomewhere(std::string_view name) const;
    // The last caption, else the name; empty when the address is unknown.
    std::string Caption(std::uint32_t packedAddress) const;

    // Who opens a dialog for SelectActions; empty: nobody, and it answers 0.
    using Chooser = std::function<int(CCommandBehaviourList& list, int selection, eHostType host)>;
    void SetChooser(Chooser chooser) { m_chooser = std::move(chooser); }

    int GetAddressStatus(const FullAddress_t* address) override;
    CStringA GetHashFieldValue(const FullAddress_t* address, const char* fieldName) override;
    void WriteCommandLog(const char* line) override;
    int SelectActions(CCommandBehaviourList& list, int selection, brindle::eHostType host) override;

  private:
    struct Device {
        std::string name;
        std::string caption;
        int state = 0;
        bool masked = false;
        bool seen = false;  // a state event has come
        std::string header;
        std::string cause;
        std::string text;
        std::string user;
        std::string value;
        std::string zone;
        std::map<std::string, std::string, std::less<>> fields;  // by name in lower case
    };
    static Change TakeState(Device& device, const CStateEvent& event);
    static std::string Device::*TextField(std::string_view name) noexcept;
    static bool FieldValue(const Device& device, std::string_view name, std::string& value);
    void LoadDevice(const IniSection& section, const std::string& file, Problems& problems);

    std::map<std::uint32_t, Device> m_devices;  // by packed address
    Chooser m_chooser;
};

}  // namespace brindle::host
