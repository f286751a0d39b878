// What happens in the run, and drawing; map_view_input.cpp has the mouse and the keyboard. Tests: map_view_test.cpp.
#include "host/map_view.h"

#include <brindle/framework/ui/dc.h>
#include <brindle/platform/clock.h>

#include <algorithm>
#include <utility>

#include "host/host_files.h"

namespace brindle::host {

namespace {

constexpr std::size_t kMostDirty = 64;  // more places become one

int LowestAlarm(const MapDocument& document) {
    int from = 0;
    for (const MapElement& element : document.elements)
        if (element.kind == MapKind::kAlarms && (from == 0 || element.from < from)) from = element.from;
    return from == 0 ? 2 : from;
}

CStringA TextOf(const RunRecord& record, const char* key) {
    const auto found = record.find(key);
    return found != record.end() && found->is_string() ? CStringA(TextFromUtf8(found->get<std::string>()))
                                                       : CStringA();
}

// The device a record is about; nothing when it names none or leaves parts open.
std::optional<std::uint32_t> DeviceOf(const RunRecord& record) {
    CAddressOv address;
    const CStringA text = TextOf(record, "address");
    if (text.IsEmpty() || !address.SetAddress(text.GetString()) || address.IsDeferred()) return {};
    return address.GetDWord();
}

MapElement GroundPicture(const MapDocument& document) {
    MapElement ground(MapKind::kPicture);
    ground.width = document.width;
    ground.height = document.height;
    ground.picture = document.picture;
    ground.keepAspect = false;
    return ground;
}

}  // namespace

MapView::MapView(const Site& site, MapDocument document, std::function<void(const EventLine&)> press)
    : m_site(site),
      m_document(std::move(document)),
      m_press(std::move(press)),
      m_scene(std::make_unique<MapScene>(site, m_document.textColour, LowestAlarm(m_document))) {
    MakeParts();
    TakeOldAlarms();
}

MapView::~MapView() = default;

void MapView::MakeParts() {
    m_motions.clear();
    m_parts.clear();
    const auto add = [this](const MapElement& element) {
        const SiteObject* object = element.object.IsEmpty() ? nullptr : m_site.Find(element.object.str());
        if (element.kind == MapKind::kAlarms)
            m_parts.push_back(std::make_unique<MapAlarmPanel>(element, object));
        else
            m_parts.push_back(std::make_unique<MapItem>(element, object, m_site.plan.folder));
    };
    if (!m_document.picture.IsEmpty()) add(GroundPicture(m_document));
    for (const MapElement& element : m_document.elements) add(element);
    AddMotions();
    m_scene->groundColour = m_document.colour.Or(0);
    m_changes.all = true;
    SetScale(m_scale);
}

void MapView::AddMotions() {
    const auto motionOf = [this](const std::string& file) -> MapMotion& {
        for (const auto& motion : m_motions)
            if (motion->File() == file) return *motion;
        const auto moved = [this](const MapItem& item) { Mark(item.Painted()); };
        return *m_motions.emplace_back(std::make_unique<MapMotion>(file, moved));
    };
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        const MapItem* item = ItemOf(i);
        if (!item || !item->Button()) continue;
        for (const MapItem::Picture& picture : item->Pictures())
            if (item->Button()->IsImageAnimated(picture.type))
                motionOf(picture.file).Add(*item, picture.type);
    }
}

// What was in alarm before the run began counts too.
void MapView::TakeOldAlarms() {
    for (const std::uint32_t device : m_site.devices.Addresses()) {
        const MapFields fields = m_scene->texts.Fields(device, nullptr);
        if (m_scene->alarms.Take(device, fields.status, false) == MapAlarms::Change::kBegan)
            BeginAlarm(fields);
    }
}

void MapView::Replace(MapDocument document) {
    m_motions.clear();
    const std::vector<std::unique_ptr<MapPart>> before = std::exchange(m_parts, {});
    m_over.reset();
    m_pressed.reset();
    m_focus.reset();
    m_document = std::move(document);
    auto scene = std::make_unique<MapScene>(m_site, m_document.textColour, LowestAlarm(m_document));
    std::swap(scene->alarms, m_scene->alarms);
    m_scene = std::move(scene);
    MakeParts();
    for (const auto& part : before) {
        const auto* item = dynamic_cast<const MapItem*>(part.get());
        if (!item || !item->IsPressedIn()) continue;
        EventLine position = item->Press();
        position.toggle = true;
        position.checked = true;
        for (std::size_t i = 0; i < m_parts.size(); ++i)
            if (MapItem* now = ItemOf(i)) now->TakePress(position);
    }
}

MapItem* MapView::ItemOf(std::size_t part) const {
    return dynamic_cast<MapItem*>(m_parts[part].get());
}

MapAlarmPanel* MapView::PanelOf(std::size_t part) const {
    return dynamic_cast<MapAlarmPanel*>(m_parts[part].get());
}

void MapView::SetScale(double scale) {
    m_scale = std::clamp(scale, kLeastScale, kLargestScale);
    for (const auto& part : m_parts) part->Place(m_scale);
    MarkAll();
}

CSize MapView::Size() const noexcept {
    return {Scaled(m_document.width, m_scale), Scaled(m_document.height, m_scale)};
}

void MapView::Take(const RunRecord& record) {
    const CStringA kind = TextOf(record, "kind");
    if (kind == "event") {
        TakeEvent(record);
    } else if (kind == "variable") {
        m_changes.variables = true;
    } else if (kind == "snmp") {
        if (const auto device = DeviceOf(record)) m_changes.devices.insert(*device);
    } else if (kind == "reload") {
        m_scene->look = MapLook(m_site.skin);
        m_changes.all = true;
    }
}

void MapView::TakeEvent(const RunRecord& record) {
    const auto device = DeviceOf(record);
    if (device) m_changes.devices.insert(*device);
    const CStringA event = TextOf(record, "event");
    if (event == "state" && device) return TakeState(*device, record);
    const bool checkBox = event == "checkbox";
    if (!checkBox && event != "button") return;
    EventLine press;
    press.kind = checkBox ? EventKind::kCheckBox : EventKind::kButton;
    press.object = TextOf(record, "object").str();
    if (device) press.address = CAddressOv(static_cast<unsigned long>(*device));
    press.key = TextOf(record, "key");
    press.keyValue = TextOf(record, "keyValue");
    press.toggle = record.value("toggle", false);
    press.checked = record.value("checked", false);
    for (std::size_t i = 0; i < m_parts.size(); ++i) {
        MapItem* item = ItemOf(i);
        if (item && item->TakePress(press) && item->Update(*m_scene)) Mark(item->Painted());
    }
}

// Every report counts, also one that another follows before anything was drawn.
void MapView::TakeState(std::uint32_t device, const RunRecord& record) {
    if (!m_site.devices.Knows(device)) return;
    const int state = record.value("state", 0);
    const auto change = m_scene->alarms.Take(device, state, record.value("masked", false));
    if (change == MapAlarms::Change::kNone) return;
    m_changes.alarms = true;
    if (change != MapAlarms::Change::kBegan) return;
    MapFields report;
    report.device = device;
    report.caption = m_site.devices.Caption(device);
    report.status = state;
    report.text = TextOf(record, "text");
    report.help = TextOf(record, "user");
    report.r = TextOf(record, "header");
    BeginAlarm(report);
}

void MapView::BeginAlarm(const MapFields& report) {
    for (std::size_t i = 0; i < m_parts.size(); ++i)
        if (const MapAlarmPanel* panel = PanelOf(i))
            return panel->Describe(m_scene->alarms.Newest(), *m_scene, report);
}

void MapView::SetBlink(bool off) {
    if (m_scene->blinkOff == off) return;
    m_scene->blinkOff = off;
    if (m_scene->alarms.HasUnacknowledged()) m_changes.alarms = true;
}

void MapView::Refresh() {
    const std::int64_t second = UnixSeconds();
    m_changes.time = m_changes.time || second != std::exchange(m_second, second);
    const MapChanges changes = std::exchange(m_changes, {});
    if (!changes.Any()) return;
    for (const auto& part : m_parts)
        if (part->DependsOn(changes) && part->Update(*m_scene)) Mark(part->Painted());
}

void MapView::Mark(const CRect& place) {
    const CSize size = Size();
    const CRect cut{std::max(place.left, 0), std::max(place.top, 0), std::min(place.right, size.cx),
                    std::min(place.bottom, size.cy)};
    if (cut.left >= cut.right || cut.top >= cut.bottom) return;
    m_dirty.push_back(cut);
    if (m_dirty.size() <= kMostDirty) return;
    CRect all;
    for (const CRect& dirty : m_dirty) all.UnionRect(all, dirty);
    m_dirty = {all};
}

void MapView::MarkAll() {
    const CSize size = Size();
    m_dirty = {{0, 0, size.cx, size.cy}};
}

std::vector<CRect> MapView::TakeDirty() {
    return std::exchange(m_dirty, {});
}

void MapView::Draw(CDC& dc, const CRect& place) {
    dc.SaveDC();
    dc.ClipToRectangle(place);
    DrawGround(dc, place);
    for (const auto& part : m_parts)
        if (Meets(part->Painted(), place)) part->Draw(dc, m_scale);
    DrawFocus(dc, place);
    dc.RestoreDC();
}

void MapView::DrawGround(CDC& dc, const CRect& place) const {
    const CSize size = Size();
    CRect ground{0, 0, size.cx, size.cy};
    // One colour is filled where it shows only: filling the whole takes longer than what stands on it there.
    const bool isPlain = !m_document.secondColour.IsGiven();
    if (isPlain && !ground.IntersectRect(ground, place)) return;
    // A little larger, so that the smooth edges lie outside.
    ground = {ground.left - 2, ground.top - 2, ground.right + 3, ground.bottom + 3};
    const std::uint32_t top = m_document.colour.Or(0);
    OVDrawing::DrawFrame(&dc, ground, top, m_document.secondColour.Or(top), 0, 0, 0, isPlain ? 0 : 2, false,
                         CPoint{});
}

void MapView::DrawFocus(CDC& dc, const CRect& place) const {
    if (!m_focus) return;
    const CRect bounds = TargetOf(*m_focus).bounds;
    if (bounds.left >= bounds.right || !Meets(bounds, place)) return;
    const int width = ScaledBorder(3, m_scale);
    OVDrawing::DrawFrame(&dc, bounds, 0, 0, 0xFFFFFF, width, 0, 0, true, CPoint{2 * width, 2 * width});
}

}  // namespace brindle::host
