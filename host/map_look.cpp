// Looks from a skin. Tests: map_view_test.cpp.
#include "host/map_look.h"

#include <algorithm>

namespace brindle::host {

namespace {

constexpr const char* kElement = "button";

struct StateMode {
    const char* name;
    std::uint32_t colour;  // 0x00BBGGRR, as built in
    std::uint32_t secondColour;
    std::uint32_t borderColour;
};
// In the order of MapLook::Colour.
constexpr StateMode kStateModes[] = {
    {"black", 0x2E2823, 0x1A1613, 0x4A423A},  {"green", 0x5A9632, 0x34601C, 0x7EC64E},
    {"yellow", 0x3CB9F2, 0x1488C8, 0x8CE0FF}, {"red", 0x3A3ADC, 0x1C1A8E, 0x7A7AFF},
    {"masked", 0x6E5A5C, 0x4A3A3C, 0x9A8688},
};

// The weights of the eye.
int Brightness(std::uint32_t colour) noexcept {
    const auto channel = [colour](int shift) { return static_cast<int>(colour >> shift & 0xFF); };
    return (299 * channel(0) + 587 * channel(8) + 114 * channel(16)) / 1000;
}

void ChooseText(BodyLook& look) noexcept {
    constexpr int kBright = 150;
    const int brightness = (Brightness(look.colour) + Brightness(look.secondColour)) / 2;
    look.textColour = brightness > kBright ? 0x16120E : 0xFFFFFF;
}

// What the mode itself says of a colour; only a text is not looked for in "default" too.
void ReadColour(const OVSkin& skin, const char* mode, const char* attribute, std::uint32_t& colour) {
    CStringA text;
    unsigned long value = 0;
    if (skin.GetExactProp(mode, kElement, attribute, text) &&
        skin.GetExactProp(mode, kElement, attribute, value))
        colour = static_cast<std::uint32_t>(value);
}

BodyLook Read(const OVSkin& skin, const char* mode, BodyLook look) {
    ReadColour(skin, mode, "fillcoloura", look.colour);
    ReadColour(skin, mode, "fillcolourb", look.secondColour);
    ReadColour(skin, mode, "bordercolour", look.borderColour);
    skin.GetExactProp(mode, kElement, "fillstyle", look.fill);
    look.fill = std::clamp(look.fill, 0, 4);
    ChooseText(look);
    return look;
}

}  // namespace

MapLook::MapLook(const OVSkin& skin)
    : m_plain(Read(skin, "default", {})), m_checked(Read(skin, "checked", m_plain)) {
    if (m_checked == m_plain) m_checked = Read(skin, "pressed", m_plain);
    for (std::size_t i = 0; i < m_states.size(); ++i) {
        const StateMode& mode = kStateModes[i];
        m_states[i] = Read(skin, mode.name,
                           {m_plain.fill, mode.colour, mode.secondColour, mode.borderColour, 0xFFFFFF});
    }
}

const BodyLook& MapLook::OfState(int state, bool masked) const noexcept {
    if (masked) return m_states[kMasked];
    return m_states[static_cast<std::size_t>(std::clamp(state, 0, 3))];
}

}  // namespace brindle::host
