// MapAlarms: which devices are or were in alarm and whom somebody has taken notice of. A device has at most one entry;
// the newest stands first.
//
// An alarm begins when a state reaches the limit, and begins anew when it rises further. It ends when the state falls
// below, or the device is masked. An entry goes when its alarm has ended and is acknowledged; masking ends both.
#pragma once

#include <brindle/framework/string_a.h>

#include <cstdint>
#include <vector>

namespace brindle::host {

struct MapAlarm {
    std::uint32_t device = 0;  // packed address
    int state = 0;             // the last one that was an alarm
    bool active = true;
    bool acknowledged = false;
    CStringA text;                // as it was when the alarm began
    std::vector<CStringA> notes;  // likewise
};

class MapAlarms {
  public:
    // The lowest state that is an alarm.
    explicit MapAlarms(int from) : m_from(from) {}

    enum class Change { kNone, kChanged, kBegan };
    // A report of a device. kBegan: the first entry is a new one; the caller gives it its texts.
    Change Take(std::uint32_t device, int state, bool masked);
    // False when there was nothing to acknowledge.
    bool Acknowledge(std::uint32_t device);
    bool AcknowledgeAll();

    bool IsUnacknowledged(std::uint32_t device) const noexcept;
    bool HasUnacknowledged() const noexcept;
    // The newest first.
    const std::vector<MapAlarm>& Entries() const noexcept { return m_entries; }
    MapAlarm& Newest() { return m_entries.front(); }

  private:
    std::vector<MapAlarm>::iterator Find(std::uint32_t device);

    int m_from;
    std::vector<MapAlarm> m_entries;
};

}  // namespace brindle::host
