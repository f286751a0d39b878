// ConditionTracker: remembers for which devices a trigger's condition holds, and turns "holds" and "holds no
// longer" into verdicts. One trigger may watch many devices; a repeat it started for one of them goes on
// while that device's condition holds, whatever the others do.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/behaviour/trigger.h>

#include <cstddef>
#include <cstdint>
#include <unordered_set>

namespace brindle::host {

class ConditionTracker {
  public:
    // Beyond this number a device is not remembered: it fires whenever its condition holds and never ends.
    static constexpr std::size_t kMostDevices = 65'536;

    struct Answer {
        int verdict;
        const char* why;
    };

    // Fires when the condition begins for the device, and while it lasts only when `every`; ends when it no
    // longer holds.
    Answer Update(const CAddressOv& device, bool holds, bool every);
    bool Holds(const CAddressOv& device) const;
    void Reset() { m_devices.clear(); }

  private:
    std::unordered_set<std::uint64_t> m_devices;
};

}  // namespace brindle::host
