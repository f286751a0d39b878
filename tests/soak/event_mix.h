// EventMix: what the devices and people of the studio do, at random by a fixed seed: the same events each time.
#pragma once

#include <cstdint>
#include <random>

#include "host/event_line.h"

namespace brindle::soak {

class EventMix {
  public:
    // The next event; its time is up to 200 milliseconds after the one before.
    host::EventLine Next();

  private:
    std::uint32_t Below(std::uint32_t limit) { return static_cast<std::uint32_t>(m_random()) % limit; }
    void MakeState(host::EventLine& line);
    void MakePress(host::EventLine& line);
    void MakeMeter(host::EventLine& line);
    void MakeOther(host::EventLine& line);

    std::mt19937 m_random{20240506};
    std::uint64_t m_time = 0;
};

}  // namespace brindle::soak
