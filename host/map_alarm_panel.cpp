// The list of alarms. Tests: map_alarm_panel_test.cpp.
#include "host/map_alarm_panel.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace brindle::host {

// A row: a button, and the notes over it. The list gives it its bounds.
class MapAlarmPanel::Row final : public OV::Button {
  public:
    Row(const MapElement& element, const Shown& shown) : m_notes(element) {
        SetFont(MapFont(element));
        SetHorizontalAlignment(OVDrawing::Left);
        SetRoundness(element.roundness);
        SetBorderThickness(1);
        Show(shown);
    }
    void Show(const Shown& shown) {
        SetText(shown.text);
        SetFontColor(shown.look.textColour);
        SetFillMode(static_cast<FillModeEnum>(shown.look.fill));
        SetColor(shown.look.colour);
        SetSecondaryColor(shown.look.secondColour);
        SetBorderColor(shown.look.borderColour);
        m_notes.Show(shown.notes, shown.look.textColour);
    }
    void Draw(CDC* dc, double scale) override {
        OV::Button::Draw(dc, scale);
        m_notes.Place(GetBounds(), scale);
        m_notes.Draw(*dc, scale);
    }

  private:
    MapNotes m_notes;
};

MapAlarmPanel::MapAlarmPanel(MapElement element, const SiteObject* object)
    : MapPart(std::move(element), object), m_list(new OV::List), m_panel(m_list) {
    m_list->setSpacing(3);
}

MapAlarmPanel::~MapAlarmPanel() = default;

void MapAlarmPanel::Place(double scale) {
    m_scale = scale;
    m_bounds = Scaled(Element().Place(), scale);
    m_panel.SetBounds(m_bounds);
    PlaceRows();
}

void MapAlarmPanel::PlaceRows() {
    m_list->SetBounds(m_bounds);
    m_list->recalcPos(m_scale);
}

BodyLook MapAlarmPanel::LookFor(const MapAlarm& alarm, const MapScene& scene) const {
    const bool blinks = !alarm.acknowledged && Element().blink && scene.blinkOff;
    BodyLook look = blinks || !alarm.active ? scene.look.Plain() : scene.look.OfState(alarm.state, false);
    if (!alarm.active && !blinks) look.borderColour = scene.look.OfState(alarm.state, false).borderColour;
    look.textColour = Element().textColour.Or(look.textColour);
    return look;
}

bool MapAlarmPanel::Update(const MapScene& scene) {
    m_list->setBackgroundColor(scene.groundColour);
    std::vector<Shown> rows;
    for (const MapAlarm& alarm : scene.alarms.Entries()) {
        if (alarm.state < Element().from) continue;
        rows.push_back({alarm.device, alarm.acknowledged, LookFor(alarm, scene), alarm.text, alarm.notes});
    }
    if (rows == m_rows) return false;
    ShowRows(std::move(rows));
    return true;
}

// The widgets of rows are made anew only when their number changes: one that is pressed may then be another.
void MapAlarmPanel::ShowRows(std::vector<Shown> rows) {
    const bool same = rows.size() == m_rows.size();
    m_rows = std::move(rows);
    if (same) {
        for (std::size_t i = 0; i < m_rows.size(); ++i) RowAt(i)->Show(m_rows[i]);
        return;
    }
    m_list->clearItems();
    for (const Shown& row : m_rows) m_list->insertItem(new Row(Element(), row), false);
    PlaceRows();
}

MapAlarmPanel::Row* MapAlarmPanel::RowAt(std::size_t row) const noexcept {
    return static_cast<Row*>(m_list->getItem(static_cast<int>(row)));
}

void MapAlarmPanel::Draw(CDC& dc, double scale) {
    m_panel.Draw(&dc, scale);
}

void MapAlarmPanel::Describe(MapAlarm& alarm, const MapScene& scene, const MapFields& report) const {
    alarm.text = scene.texts.Fill(Element().text, report, Object());
    alarm.notes.clear();
    for (const MapNote& note : Element().notes)
        alarm.notes.push_back(scene.texts.Fill(note.text, report, Object()));
}

bool MapAlarmPanel::Scrolls() const noexcept {
    return m_bounds.Height() < m_list->GetBounds().Height();
}

// Without a scroll bar the panel would still know where its last one was.
bool MapAlarmPanel::OnMouseDown(CPoint point) {
    if (Scrolls())
        m_panel.OnMouseDown(point);
    else
        m_list->OnMouseDown(point);
    m_pressed.reset();
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        if (RowAt(i) == m_list->getItemAt(point) && RowBounds(i).PtInRect(point))
            m_pressed = m_rows[i].device;
    return true;
}

bool MapAlarmPanel::OnMouseMove(CPoint point) {
    return Scrolls() && m_panel.OnMouseOver(point);
}

std::optional<std::uint32_t> MapAlarmPanel::OnMouseUp(CPoint point) {
    if (Scrolls())
        m_panel.OnMouseUp(point);
    else
        m_list->OnMouseUp(point);
    const std::optional<std::uint32_t> pressed = std::exchange(m_pressed, std::nullopt);
    for (std::size_t i = 0; i < m_rows.size(); ++i)
        if (pressed == m_rows[i].device && RowBounds(i).PtInRect(point)) return pressed;
    return {};
}

CStringA MapAlarmPanel::RowName(std::size_t row) const {
    std::string name = m_rows[row].text.str();
    for (const CStringA& note : m_rows[row].notes)
        if (!note.IsEmpty()) name += ", " + note.str();
    return name;
}

CRect MapAlarmPanel::RowBounds(std::size_t row) const noexcept {
    const CRect bounds = RowAt(row)->GetBounds();
    if (!Meets(bounds, m_bounds)) return {};
    const int right = m_bounds.right - (Scrolls() ? static_cast<int>(20 * m_scale) : 0);
    return {bounds.left, std::max(bounds.top, m_bounds.top), std::min(bounds.right, right),
            std::min(bounds.bottom, m_bounds.bottom)};
}

// A press on an arrow moves the rows by half a panel, within limits; they have their new places only after drawing, so
// they are moved here too.
bool MapAlarmPanel::ScrollTo(std::size_t row) {
    const int width = static_cast<int>(20 * m_scale);
    const int half = m_bounds.Height() / 2;
    bool moved = false;
    for (std::size_t presses = 0; Scrolls() && presses <= 2 * m_rows.size(); ++presses) {
        const CRect bounds = RowAt(row)->GetBounds();
        const bool above = bounds.top < m_bounds.top;
        if (!above && bounds.bottom <= m_bounds.bottom) break;
        const CPoint arrow{m_bounds.right - width / 2,
                           above ? m_bounds.top + width / 2 : m_bounds.bottom - width / 2};
        m_panel.OnMouseDown(arrow);
        m_panel.OnMouseUp(arrow);
        const int offset = RowAt(0)->GetBounds().top - m_bounds.top;
        const int lowest = half - m_list->GetBounds().Height();
        MoveRows(std::clamp(offset + (above ? half : -half), lowest, 0) - offset);
        moved = true;
    }
    return moved;
}

void MapAlarmPanel::MoveRows(int by) {
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        CRect bounds = RowAt(i)->GetBounds();
        bounds.OffsetRect(0, by);
        RowAt(i)->SetBounds(bounds);
    }
}

}  // namespace brindle::host
