// Events in records. Tests: run_test.cpp.
#include "host/event_record.h"

#include <brindle/address/events.h>

#include "host/address_pattern.h"
#include "host/event_line.h"
#include "host/host_files.h"
#include "host/words.h"

namespace brindle::host {

namespace {

EventKind KindOf(const CStateEvent& event) {
    if (dynamic_cast<const CStateChangedEvent*>(&event)) return EventKind::kState;
    if (dynamic_cast<const CButtonPressEvent*>(&event)) return EventKind::kButton;
    if (dynamic_cast<const CCheckBoxCheckedPressEvent*>(&event)) return EventKind::kCheckBox;
    if (dynamic_cast<const CCheckBoxUnCheckedPressEvent*>(&event)) return EventKind::kCheckBox;
    if (dynamic_cast<const CCaptionChangedEvent*>(&event)) return EventKind::kCaption;
    if (dynamic_cast<const CMeterValueChangeEvent*>(&event)) return EventKind::kMeter;
    if (dynamic_cast<const CMeterZoneChangeEvent*>(&event)) return EventKind::kZone;
    return EventKind::kPoll;
}

// A float as the shortest decimal number that stands for it: 48.2, not 48.2000008.
double AsWritten(float value) {
    double shortest = static_cast<double>(value);
    ParseReal(RealText(value), shortest);
    return shortest;
}

void DescribeOwn(const CStateEvent& event, EventKind kind, RunRecord& record) {
    if (kind == EventKind::kButton)
        record["toggle"] = static_cast<const CButtonPressEvent&>(event).toggleState();
    if (kind == EventKind::kCheckBox)
        record["checked"] = dynamic_cast<const CCheckBoxCheckedPressEvent*>(&event) != nullptr;
    if (kind == EventKind::kMeter)
        record["value"] = AsWritten(static_cast<const CMeterValueChangeEvent&>(event).GetValue());
    if (kind == EventKind::kZone) record["zone"] = static_cast<const CMeterZoneChangeEvent&>(event).GetZone();
}

}  // namespace

void DescribeEvent(const CStateEvent& event, RunRecord& record) {
    const EventKind kind = KindOf(event);
    record["event"] = EventKindName(kind);
    const std::string address = AddressText(event.GetAddress());
    if (!address.empty()) record["address"] = address;
    if (event.IsMasked()) record["masked"] = true;
    if (kind == EventKind::kState || event.GetState() != 0) record["state"] = event.GetState();
    DescribeOwn(event, kind, record);
    const auto text = [&record](const char* key, const CStringA& value) {
        if (!value.IsEmpty()) record[key] = TextToUtf8(value.view());
    };
    text("header", event.GetStateDueToHeader());
    text("cause", event.GetStateDueToCauseHeader());
    text("text", event.GetStateDueToString());
    text("user", event.GetUserString());
    text("key", event.GetObjStringK());
    text("keyValue", event.GetObjStringV());
}

}  // namespace brindle::host
