// OV::Button: its state, and what is drawn from it; its pictures are in button_images.cpp. Tests: button_test.cpp.
#include "brindle/widgets/button.h"

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/drawing_surface.h"
#include "brindle/widgets/button_shapes.h"
#include "brindle/widgets/rounded_rectangle.h"

namespace OV {
namespace {

using brindle::ButtonLook, brindle::ButtonParts, brindle::ButtonShapes;

constexpr double kDisabledLightening = 0.5;
constexpr std::uint32_t kStrongWhite = 200, kGlowWhite = 0x7F, kBright = 127;

ButtonLook::Fill FillOf(Button::FillModeEnum mode) noexcept {
    switch (mode) {
        case Button::FillVerticalGradient:
            return ButtonLook::kDown;
        case Button::FillHorizontalGradient:
            return ButtonLook::kAcross;
        case Button::FillNone:
            return ButtonLook::kNoBody;
        default:
            return ButtonLook::kSolid;
    }
}

ButtonLook::Shine HighlightOf(OVDrawing::Escapement escapement) noexcept {
    switch (escapement) {
        case OVDrawing::Default:
        case OVDrawing::Horizontal:
            return ButtonLook::kTopShine;
        case OVDrawing::Vertical90:
            return ButtonLook::kLeftShine;
        case OVDrawing::Vertical270:
            return ButtonLook::kRightShine;
    }
    return ButtonLook::kEmptyShine;
}

// Kept: red is not asked.
bool IsBright(std::uint32_t colour) noexcept {
    return ((colour >> 16) & 0xFF) > kBright && ((colour >> 8) & 0xFF) > kBright;
}

}  // namespace

Button::Button() = default;
Button::Button(const CStringA& text) {
    SetText(text);
}
Button::Button(const Button& other) = default;
Button& Button::operator=(const Button& other) = default;
Button::~Button() = default;

void Button::OnMouseUp() {
    Text::OnMouseUp();
}

std::uint32_t Button::BodyColour() const noexcept {
    const bool changed =
        m_selected && (m_selectedMode == SelectedColour || m_selectedMode == SelectedColourAndGlow);
    const std::uint32_t colour = changed ? m_selectedColour : m_colour;
    return m_disabled ? static_cast<std::uint32_t>(Lighter(colour, kDisabledLightening)) : colour;
}

ButtonLook Button::Look() const noexcept {
    const std::uint32_t colour = BodyColour();
    const bool strong = m_opacity > static_cast<int>(kBright) && IsBright(colour);
    const bool glows =
        m_selected && (m_selectedMode == SelectedColourAndGlow || m_selectedMode == SelectedGlow);
    ButtonLook look;
    look.width = m_bounds.Width();
    look.height = m_bounds.Height();
    look.radius = brindle::CornerRadius(m_bounds, m_roundness);
    look.outline = brindle::ArgbOf(m_borderColour);
    look.outlineWidth = m_borderThickness;
    look.fill = FillOf(m_fillMode);
    look.first = brindle::ArgbOf(colour, m_opacity);
    look.second = brindle::ArgbOf(m_secondaryColour, m_opacity);
    if (!m_disabled && m_fillMode == FillGlossy)
        look.shine = m_pressed ? ButtonLook::kSheen : HighlightOf(CaptionEscapement());
    look.strongWhite = strong ? 255 : kStrongWhite;
    if (glows) look.glowWhite = strong ? 255 : kGlowWhite;
    return look;
}

void Button::Draw(CDC* dc, double scale) {
    if (!dc) return;
    const ButtonLook look = Look();
    const CPoint at{m_bounds.left, m_bounds.top};
    brindle::DrawingSurface& surface = dc->Surface();
    dc->SaveDC();
    if (m_drawImageBehindNormal) DrawImage(dc, m_bounds);
    if (!m_drawImageBehindNormal && CurrentImage().picture) {
        surface.DrawShared(ButtonShapes(look, ButtonParts::kBody), at);
        DrawImage(dc, m_bounds);
        surface.DrawShared(ButtonShapes(look, ButtonParts::kOutline), at);
    } else {
        surface.DrawShared(ButtonShapes(look, ButtonParts::kBoth), at);
    }
    dc->RestoreDC();
    Text::Draw(dc, scale);
}

}  // namespace OV
