// CCaptionChangedEvent. Tests: event_test.cpp.
#include "brindle/address/caption_changed_event.h"

CCaptionChangedEvent::~CCaptionChangedEvent() = default;

CCommandEvent* CCaptionChangedEvent::Replicate() {
    return ReplicateAs<CCaptionChangedEvent>();
}
