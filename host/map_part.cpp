// What all parts have in common. Tests: map_view_test.cpp.
#include "host/map_part.h"

#include <brindle/variables/variable_manager.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace brindle::host {

MapPart::MapPart(MapElement element, const SiteObject* object)
    : m_element(std::move(element)),
      m_object(object),
      m_device(m_element.Device(object ? object->plan.address : CAddressOv())) {
    if (m_device) m_devices.insert(*m_device);
    for (const CStringA* text : m_element.Texts()) {
        m_time = m_time || MapTexts::TellsTime(*text);
        m_variables = m_variables || VariableManager::containsVariable(*text);
        for (const std::uint32_t address : HashFieldAddresses(*text)) m_devices.insert(address);
    }
}

// A variable may hold any field, so a text with one may depend on everything.
bool MapPart::DependsOn(const MapChanges& changes) const {
    if (changes.all || (m_variables && changes.Any()) || (m_time && changes.time)) return true;
    if (changes.alarms && (m_element.states || m_element.kind == MapKind::kAlarms)) return true;
    return std::any_of(m_devices.begin(), m_devices.end(),
                       [&](std::uint32_t device) { return changes.devices.contains(device); });
}

LOGFONTA MapFont(const MapElement& element, int percent) {
    LOGFONTA font{};
    font.lfHeight = -std::max(1, Scaled(element.size, percent / 100.0));
    font.lfWeight = element.bold ? 700 : 400;
    font.lfItalic = element.italic;
    const std::size_t length = std::min(element.font.view().size(), sizeof font.lfFaceName - 1);
    std::memcpy(font.lfFaceName, element.font.GetString(), length);
    return font;
}

MapNotes::MapNotes(const MapElement& element) {
    for (const MapNote& note : element.notes) {
        OV::Text& text = m_texts.emplace_back();
        text.SetFont(MapFont(element, note.scale));
        text.SetHorizontalAlignment(AlignmentOf(note.align));
        text.SetVerticalAlignment(VerticalAlignmentOf(note.vertical));
        text.SetEscapment(EscapementOf(note.turn));
    }
}

void MapNotes::Place(const CRect& bounds, double scale) {
    CRect place = bounds;
    place.DeflateRect(Scaled(5, scale), Scaled(5, scale));
    for (OV::Text& text : m_texts) text.SetBounds(place);
}

bool MapNotes::Show(const std::vector<CStringA>& texts, std::uint32_t colour) {
    bool changed = m_colour != colour;
    m_colour = colour;
    for (std::size_t i = 0; i < m_texts.size() && i < texts.size(); ++i) {
        m_texts[i].SetFontColor(colour);
        if (m_texts[i].GetText() == texts[i]) continue;
        m_texts[i].SetText(texts[i]);
        changed = true;
    }
    return changed;
}

void MapNotes::Draw(CDC& dc, double scale) {
    for (OV::Text& text : m_texts) text.Draw(&dc, scale);
}

OVDrawing::HorizontalAlignment AlignmentOf(int align) noexcept {
    constexpr OVDrawing::HorizontalAlignment kAlignments[] = {OVDrawing::Left, OVDrawing::Centre,
                                                              OVDrawing::Right};
    return kAlignments[align];
}

OVDrawing::VerticalAlignment VerticalAlignmentOf(int vertical) noexcept {
    constexpr OVDrawing::VerticalAlignment kAlignments[] = {OVDrawing::Top, OVDrawing::Middle,
                                                            OVDrawing::Bottom};
    return kAlignments[vertical];
}

OVDrawing::Escapement EscapementOf(int turn) noexcept {
    constexpr OVDrawing::Escapement kTurns[] = {OVDrawing::Default, OVDrawing::Vertical90,
                                                OVDrawing::Vertical270};
    return kTurns[turn];
}

}  // namespace brindle::host
