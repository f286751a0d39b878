// The kinds of elements and their attributes. Tests: map_document_test.cpp.
#include "host/map_element.h"

#include <algorithm>
#include <array>

#include "host/skin_document.h"

namespace brindle::host {

namespace {

constexpr std::array<const char*, 6> kKindNames{"panel", "label", "clock", "button", "picture", "alarms"};

Attribute AlignAttribute(int& field) {
    return ChoiceAttribute("align", field, {"left", "centre", "right"});
}
Attribute VerticalAttribute(int& field) {
    return ChoiceAttribute("valign", field, {"top", "middle", "bottom"});
}
Attribute TurnAttribute(int& field) {
    return ChoiceAttribute("turn", field, {"none", "up", "down"});
}
Attribute ColourAttribute(std::string name, MapColour& field) {
    return ParsedAttribute(std::move(name), "a colour such as #FF8000", field);
}

}  // namespace

std::string MapColour::Parse(std::string_view text) {
    if (text.size() != 7 || text.front() != '#' || !IsSkinColour(std::string(text)))
        return "\"" + std::string(text.substr(0, 40)) + "\" is not a colour such as #FF8000";
    std::uint32_t value = 0;
    for (const char c : text.substr(1)) {
        const int digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
        value = value << 4 | static_cast<std::uint32_t>(digit);
    }
    m_colour = (value & 0xFF) << 16 | (value & 0xFF00) | value >> 16;
    return {};
}

std::string MapColour::Text() const {
    if (!m_colour) return {};
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text = "#";
    for (const int shift : {4, 0, 12, 8, 20, 16}) text += kDigits[*m_colour >> shift & 0xF];
    return text;
}

const char* MapKindName(MapKind kind) noexcept {
    return kKindNames[static_cast<std::size_t>(kind)];
}

std::optional<MapKind> FindMapKind(std::string_view name) noexcept {
    const auto found = std::find(kKindNames.begin(), kKindNames.end(), name);
    if (found == kKindNames.end()) return {};
    return static_cast<MapKind>(found - kKindNames.begin());
}

AttributeTable MapNote::Attributes() {
    return {Required(FormattedAttribute("text", text)), AlignAttribute(align), VerticalAttribute(vertical),
            TurnAttribute(turn), NumberAttribute("scale", scale, 1, 1000)};
}

MapElement::MapElement(MapKind elementKind) : kind(elementKind) {
    if (kind == MapKind::kButton) {
        states = true;
        border = 2;
    }
    if (kind == MapKind::kClock) text = "%H%:%m%:%s%";
    if (kind == MapKind::kAlarms) {
        text = "%c: %t";
        align = kAlignLeft;
    }
}

AttributeTable MapElement::Attributes() {
    AttributeTable table;
    AppendPlace(table);
    if (kind == MapKind::kPicture) {
        AppendDevice(table);
        table.push_back(Required(TextAttribute("picture", picture)));
        table.push_back(FlagAttribute("keepAspect", keepAspect));
        return table;
    }
    AppendText(table, kind == MapKind::kLabel);
    if (kind == MapKind::kAlarms) {
        table.push_back(NumberAttribute("from", from, 1, 1'000'000));
        table.push_back(NumberAttribute("roundness", roundness, 0, 100));
        return table;
    }
    AppendDevice(table);
    if (kind == MapKind::kPanel || kind == MapKind::kButton) AppendBody(table);
    if (kind == MapKind::kButton) AppendButton(table);
    return table;
}

void MapElement::AppendPlace(AttributeTable& table) {
    table.push_back(Required(NumberAttribute("x", x, -kFarthest, kFarthest)));
    table.push_back(Required(NumberAttribute("y", y, -kFarthest, kFarthest)));
    table.push_back(Required(NumberAttribute("width", width, 1, kFarthest)));
    table.push_back(Required(NumberAttribute("height", height, 1, kFarthest)));
    table.push_back(TextAttribute("name", name));
}

void MapElement::AppendText(AttributeTable& table, bool required) {
    const Attribute caption = FormattedAttribute("text", text);
    table.push_back(required ? Required(caption) : caption);
    table.push_back(TextAttribute("font", font));
    table.push_back(NumberAttribute("size", size, 1, 1000));
    table.push_back(FlagAttribute("bold", bold));
    table.push_back(FlagAttribute("italic", italic));
    table.push_back(ColourAttribute("textColour", textColour));
    if (kind == MapKind::kAlarms) return;
    table.push_back(AlignAttribute(align));
    table.push_back(VerticalAttribute(vertical));
    table.push_back(TurnAttribute(turn));
}

void MapElement::AppendDevice(AttributeTable& table) {
    table.push_back(TextAttribute("object", object));
    table.push_back(ParsedAttribute("device", "an address such as 0001:02:03", device));
}

void MapElement::AppendBody(AttributeTable& table) {
    table.push_back(ColourAttribute("colour", colour));
    table.push_back(ColourAttribute("borderColour", borderColour));
    table.push_back(NumberAttribute("border", border, 0, 100));
    table.push_back(NumberAttribute("roundness", roundness, 0, 100));
    table.push_back(NumberAttribute("opacity", opacity, 0, 255));
    table.push_back(FlagAttribute("states", states));
    table.push_back(FlagAttribute("blink", blink));
}

void MapElement::AppendButton(AttributeTable& table) {
    table.push_back(
        ChoiceAttribute("fill", fill, {"glossy", "solid", "vertical", "horizontal", "none", "skin"}));
    table.push_back(ColourAttribute("secondColour", secondColour));
    table.push_back(ChoiceAttribute("event", event, {"button", "checkbox", "acknowledge", "none"}));
    table.push_back(FlagAttribute("toggle", toggle));
    table.push_back(TextAttribute("key", key));
    table.push_back(TextAttribute("keyValue", keyValue));
    table.push_back(TextAttribute("user", user));
    table.push_back(ChoiceAttribute("selected", selected, {"colour", "both", "glow"}));
    table.push_back(ColourAttribute("selectedColour", selectedColour));
    table.push_back(TextAttribute("picture", picture));
    table.push_back(TextAttribute("pressedPicture", pressedPicture));
    table.push_back(TextAttribute("selectedPicture", selectedPicture));
    table.push_back(TextAttribute("overPicture", overPicture));
    table.push_back(FlagAttribute("pictureBehind", pictureBehind));
    table.push_back(FlagAttribute("keepAspect", keepAspect));
}

bool MapElement::IsClickable() const noexcept {
    return kind == MapKind::kButton && event != kEventNone;
}

std::optional<std::uint32_t> MapElement::Device(const CAddressOv& own) const {
    if (device.IsOpen() && own.IsDeferred()) return {};
    return device.Completed(own).GetDWord();
}

std::vector<const CStringA*> MapElement::Texts() const {
    std::vector<const CStringA*> texts{&text};
    for (const MapNote& note : notes) texts.push_back(&note.text);
    return texts;
}

std::vector<const CStringA*> MapElement::Pictures() const {
    std::vector<const CStringA*> given;
    for (const CStringA* file : {&picture, &pressedPicture, &selectedPicture, &overPicture})
        if (!file->IsEmpty()) given.push_back(file);
    return given;
}

}  // namespace brindle::host
