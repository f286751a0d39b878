// The shapes of a button: what OV::Button makes of its state, and the drawing of it.
#pragma once

#include <cstdint>
#include <type_traits>

#include "brindle/framework/point.h"
#include "brindle/framework/rect.h"
#include "brindle/platform/drawing_surface.h"

namespace brindle {

// Everything that a button's pixels depend on, but for its place, picture and caption.
struct ButtonLook {
    enum Fill : std::int32_t { kNoBody, kSolid, kDown, kAcross };  // gradients: from first to second
    enum Shine : std::int32_t {
        kNoShine,
        kTopShine,
        kLeftShine,
        kRightShine,
        kEmptyShine,  // a highlight without an area
        kSheen,       // of a pressed button
    };

    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t radius = 0;  // of the corners
    Fill fill = kSolid;
    Argb first = 0;
    Argb second = 0;
    Shine shine = kNoShine;
    std::uint32_t strongWhite = 0;  // alpha where the highlight begins; a third of it where it ends
    std::uint32_t glowWhite = 0;    // alpha in the centre of the glow; 0: there is none
    Argb outline = 0;
    std::int32_t outlineWidth = 0;  // 0 or less: none
};
static_assert(std::has_unique_object_representations_v<ButtonLook>, "compared by its bytes");

// What of a button is drawn together: a picture may lie between its body and its outline.
enum class ButtonParts : std::int32_t { kBody, kOutline, kBoth };

class ButtonShapes final : public SharedShapes {
  public:
    ButtonShapes(const ButtonLook& look, ButtonParts parts) noexcept : m_bytes{kKind, parts, look} {}

    std::string_view Look() const override;
    CRect Extent(CPoint at) const override;
    void Draw(DrawingSurface& surface, CPoint at) const override;

  private:
    static constexpr std::uint32_t kKind = 0x4E545442;  // no other kind of shapes begins with it

    struct {
        std::uint32_t kind;
        ButtonParts parts;
        ButtonLook look;
    } m_bytes;
};

}  // namespace brindle
