// Tests: map_motion_test.cpp.
#include "host/map_motion.h"

#include <brindle/platform/clock.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "host/map_item.h"

namespace brindle::host {

MapMotion::MapMotion(std::string file, std::function<void(const MapItem&)> moved)
    : m_file(std::move(file)), m_moved(std::move(moved)) {}

void MapMotion::Add(const MapItem& item, OV::Button::ImageTypeEnum type) {
    if (m_items.empty()) {
        m_type = type;
        CAnimationUpdateController::GetInstance().Register(this);
    }
    m_items.push_back(&item);
}

void MapMotion::DoUpdate(unsigned int now, std::uint64_t& nextDue) {
    unsigned int delay = kShortest;
    m_items.front()->Button()->UpdateAnimation(m_type, now, delay);
    nextDue = SystemMilliseconds() + std::max(delay, kShortest);
    for (const MapItem* item : m_items) m_moved(*item);
}

unsigned int MoveWhatIsDue() {
    CAnimationUpdateController& controller = CAnimationUpdateController::GetInstance();
    unsigned int wait = 0;
    if (!controller.NeedsUpdate(wait)) return std::numeric_limits<unsigned int>::max();
    if (wait > 0) return wait;
    controller.DoUpdate();
    return controller.NeedsUpdate(wait) ? wait : std::numeric_limits<unsigned int>::max();
}

}  // namespace brindle::host
