// The random events. Tests: what they make happen is counted by soak_main.cpp.
#include "tests/soak/event_mix.h"

namespace brindle::soak {

using host::EventKind;
using host::EventLine;

EventLine EventMix::Next() {
    EventLine line;
    m_time += Below(200);
    line.t = m_time;
    const std::uint32_t kind = Below(100);
    if (kind < 55)
        MakeState(line);
    else if (kind < 70)
        MakePress(line);
    else if (kind < 90)
        MakeMeter(line);
    else
        MakeOther(line);
    return line;
}

void EventMix::MakeState(EventLine& line) {
    constexpr const char* kDevices[] = {"0001:01:00", "0001:02:00", "0002:00:00", "0003:01:00",
                                        "0003:02:00", "0005:00:00", "0009:09:09"};  // the last one is unknown
    constexpr const char* kTexts[] = {"Back on air", "Output power lost", "Fan 2 slow", "No signal", ""};
    line.kind = EventKind::kState;
    line.address = CAddressOv(kDevices[Below(7)]);
    line.state = static_cast<int>(Below(5));
    line.masked = Below(10) == 0;
    line.header = Below(2) ? "Output" : "Cooling";
    line.cause = Below(2) ? "Mains" : "";
    line.text = kTexts[Below(5)];
}

void EventMix::MakePress(EventLine& line) {
    constexpr const char* kObjects[] = {"camera1", "camera2", "router"};
    line.kind = Below(3) ? EventKind::kButton : EventKind::kCheckBox;
    line.object = kObjects[Below(3)];
    line.toggle = Below(2) == 0;
    line.checked = Below(2) == 0;
    line.key = Below(2) ? "Source" : "";
    line.keyValue = "2";
    line.user = Below(2) ? "supervisor" : "director";
}

void EventMix::MakeMeter(EventLine& line) {
    if (Below(2)) {
        line.kind = EventKind::kMeter;
        line.address = CAddressOv("0004:00:02");
        line.value = static_cast<float>(Below(12'000)) / 10.0F;
    } else {
        line.kind = EventKind::kZone;
        line.address = CAddressOv("0004:00:01");
        line.zone = static_cast<int>(Below(5));
    }
}

void EventMix::MakeOther(EventLine& line) {
    switch (Below(3)) {
        case 0:
            line.kind = EventKind::kCaption;
            line.object = "router";
            line.text = Below(2) ? "Station slide" : "Evening news";
            break;
        case 1:
            line.kind = EventKind::kUnlock;
            line.object = "router";
            line.user = Below(2) ? "supervisor" : "director";
            break;
        default:
            line.kind = EventKind::kPoll;
    }
}

}  // namespace brindle::soak
