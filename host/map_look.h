// MapLook: how bodies of a map look, taken from the skin: plain, pressed, checked, and one look for each state.
//
// The skin's element "button" says it, in the modes "default", "pressed", "checked", and for states in the modes
// "black", "green", "yellow", "red" and "masked". What a state's mode does not say itself comes from a built-in look.
#pragma once

#include <brindle/framework/log_font.h>
#include <brindle/skin/ov_skin.h>

#include <array>
#include <cstdint>

namespace brindle::host {

struct BodyLook {
    int fill = 2;  // as OV::Button::FillModeEnum
    std::uint32_t colour = 0x595959;
    std::uint32_t secondColour = 0x595959;
    std::uint32_t borderColour = 0;
    std::uint32_t textColour = 0xFFFFFF;  // what can be read on it

    friend bool operator==(const BodyLook&, const BodyLook&) = default;
};

class MapLook {
  public:
    explicit MapLook(const OVSkin& skin);

    const BodyLook& Plain() const noexcept { return m_plain; }
    const BodyLook& Checked() const noexcept { return m_checked; }
    const BodyLook& OfState(int state, bool masked) const noexcept;

  private:
    enum Colour { kBlack, kGreen, kYellow, kRed, kMasked, kColours };
    BodyLook m_plain;
    BodyLook m_checked;
    std::array<BodyLook, kColours> m_states;
};

}  // namespace brindle::host
