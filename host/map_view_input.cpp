// The mouse and the keyboard on a map. Tests: map_view_test.cpp, map_focus_test.cpp.
#include <algorithm>

#include "host/map_view.h"

namespace brindle::host {

// The topmost thing there that hears of the mouse; what lies in front of it and does not, lets it through.
std::optional<std::size_t> MapView::PartAt(CPoint point) const {
    for (std::size_t i = m_parts.size(); i-- > 0;) {
        const MapPart& part = *m_parts[i];
        const bool hears = part.Element().IsClickable() || part.Element().kind == MapKind::kAlarms;
        if (hears && part.Bounds().PtInRect(point)) return i;
    }
    return {};
}

bool MapView::IsClickable(CPoint point) const {
    const auto part = PartAt(point);
    return part && (ItemOf(*part) || TargetAt(point));
}

void MapView::OnMouseMove(CPoint point) {
    if (m_pressed) {
        MapAlarmPanel* panel = PanelOf(*m_pressed);
        if (panel && panel->OnMouseMove(point)) Mark(panel->Painted());
        return;
    }
    const auto part = PartAt(point);
    if (part == m_over) return;
    OnMouseLeave();
    m_over = part;
    MapItem* item = part ? ItemOf(*part) : nullptr;
    if (!item) return;
    item->Button()->OnMouseOver(point);
    if (!item->Element().overPicture.IsEmpty()) Mark(item->Painted());
}

void MapView::OnMouseLeave() {
    MapItem* item = m_over ? ItemOf(*m_over) : nullptr;
    m_over.reset();
    if (!item) return;
    item->Button()->OnMouseOut();
    if (!item->Element().overPicture.IsEmpty()) Mark(item->Painted());
}

void MapView::OnMouseDown(CPoint point) {
    if (m_pressed) return;  // another button of the mouse
    MarkTarget(std::exchange(m_focus, std::nullopt));
    m_pressed = PartAt(point);
    if (!m_pressed) return;
    if (MapAlarmPanel* panel = PanelOf(*m_pressed))
        panel->OnMouseDown(point);
    else
        ItemOf(*m_pressed)->Button()->OnMouseDown(point);
    Mark(m_parts[*m_pressed]->Painted());
}

void MapView::OnMouseUp(CPoint point) {
    const auto part = std::exchange(m_pressed, std::nullopt);
    if (!part) return;
    Mark(m_parts[*part]->Painted());
    if (MapAlarmPanel* panel = PanelOf(*part)) {
        if (const auto device = panel->OnMouseUp(point)) Acknowledge(device);
        return;
    }
    MapItem& item = *ItemOf(*part);
    item.Button()->OnMouseUp(point);
    if (item.Bounds().PtInRect(point)) PressItem(item);
}

void MapView::PressItem(const MapItem& item) {
    if (item.Element().event == kEventAcknowledge) return Acknowledge({});
    if (m_press) m_press(item.Press());
}

void MapView::Acknowledge(std::optional<std::uint32_t> device) {
    if (device ? m_scene->alarms.Acknowledge(*device) : m_scene->alarms.AcknowledgeAll())
        m_changes.alarms = true;
}

std::vector<MapView::Key> MapView::Keys() const {
    std::vector<Key> keys;
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        if (m_parts[i]->Element().IsClickable()) keys.push_back({i, {}});
        if (const MapAlarmPanel* panel = PanelOf(i))
            for (std::size_t row = 0; row < panel->RowCount(); ++row)
                keys.push_back({i, panel->RowDevice(row)});
    }
    return keys;
}

std::optional<std::size_t> MapView::RowOf(const Key& key) const {
    const MapAlarmPanel& panel = *PanelOf(key.part);
    for (std::size_t row = 0; row < panel.RowCount(); ++row)
        if (panel.RowDevice(row) == key.device) return row;
    return {};
}

MapTarget MapView::TargetOf(const Key& key) const {
    MapTarget target;
    if (key.device) {
        const auto row = RowOf(key);
        if (!row) return target;
        const MapAlarmPanel& panel = *PanelOf(key.part);
        target.bounds = panel.RowBounds(*row);
        target.name = panel.RowName(*row);
        target.isAlarm = true;
        target.unacknowledged = !panel.IsRowAcknowledged(*row);
        return target;
    }
    const MapItem& item = *ItemOf(key.part);
    target.bounds = item.Bounds();
    target.name = item.Name();
    target.stays = item.Element().toggle || item.Element().event == kEventCheckBox;
    target.pressedIn = item.IsPressedIn();
    return target;
}

std::vector<MapTarget> MapView::Targets() const {
    std::vector<MapTarget> targets;
    for (const Key& key : Keys()) targets.push_back(TargetOf(key));
    return targets;
}

std::optional<std::size_t> MapView::TargetAt(CPoint point) const {
    const std::vector<Key> keys = Keys();
    for (std::size_t i = keys.size(); i-- > 0;)
        if (TargetOf(keys[i]).bounds.PtInRect(point)) return i;
    return {};
}

MapSubject MapView::SubjectOf(std::size_t target) const {
    const std::vector<Key> keys = Keys();
    if (target >= keys.size()) return {};
    const Key& key = keys[target];
    if (key.device) return {nullptr, key.device};
    const MapPart& part = *m_parts[key.part];
    return {part.Object(), part.Device()};
}

MapSubject MapView::SubjectAt(CPoint point) const {
    if (const auto target = TargetAt(point)) return SubjectOf(*target);
    for (std::size_t i = m_parts.size(); i-- > 0;) {
        const MapPart& part = *m_parts[i];
        if (!part.Object() && !part.Device()) continue;
        if (part.Bounds().PtInRect(point)) return {part.Object(), part.Device()};
    }
    return {};
}

std::optional<std::size_t> MapView::Focus() const {
    if (!m_focus) return {};
    const std::vector<Key> keys = Keys();
    const auto found = std::find(keys.begin(), keys.end(), *m_focus);
    if (found == keys.end()) return {};
    return static_cast<std::size_t>(found - keys.begin());
}

void MapView::MarkTarget(const std::optional<Key>& key) {
    if (!key) return;
    CRect place = TargetOf(*key).bounds;
    if (place.left >= place.right) return;
    const int around = ScaledBorder(3, m_scale) + 1;
    place.DeflateRect(-around, -around);
    Mark(place);
}

void MapView::SetFocus(std::optional<std::size_t> target) {
    const std::vector<Key> keys = Keys();
    MarkTarget(m_focus);
    m_focus.reset();
    if (!target || *target >= keys.size()) return;
    m_focus = keys[*target];
    if (const auto row = m_focus->device ? RowOf(*m_focus) : std::nullopt) {
        MapAlarmPanel& panel = *PanelOf(m_focus->part);
        if (panel.ScrollTo(*row)) Mark(panel.Painted());
    }
    MarkTarget(m_focus);
}

void MapView::MoveFocus(MapDirection direction) {
    std::vector<CRect> places;
    for (const MapTarget& target : Targets()) places.push_back(target.bounds);
    SetFocus(NextTarget(places, Focus(), direction));
}

void MapView::Press(std::size_t target) {
    const std::vector<Key> keys = Keys();
    if (target >= keys.size()) return;
    const Key& key = keys[target];
    if (key.device)
        Acknowledge(key.device);
    else
        PressItem(*ItemOf(key.part));
}

}  // namespace brindle::host
