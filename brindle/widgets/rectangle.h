// OV::Rectangle: a caption on a filled, rounded body with an outline, both perhaps transparent. Thread: the user
// interface's.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"
#include "brindle/widgets/text.h"

namespace brindle {
struct RectangleLayoutProbe;
}

namespace OV {

class BRINDLE_API Rectangle : public Text {
  public:
    // Opaque white with a thin black outline.
    Rectangle();
    Rectangle(const Rectangle& other);
    Rectangle& operator=(const Rectangle& other);
    ~Rectangle() override;

    // The number is the scale of the caption's fonts.
    void Draw(CDC* dc, double scale) override;

    // 0 to 255, of body and outline; the low 8 bits count.
    void SetOpacity(int opacity) noexcept { m_opacity = opacity; }
    // In percent of half the smaller side. More than half of the height gives square corners.
    void SetRoundness(int percent) noexcept { m_roundness = percent; }
    // Colours are 0x00BBGGRR.
    void SetColor(unsigned long colour) noexcept { m_colour = static_cast<std::uint32_t>(colour); }
    void SetBorderThickness(int thickness) noexcept { m_borderThickness = thickness; }  // 0 or less: none
    void SetBorderColor(unsigned long colour) noexcept {
        m_borderColour = static_cast<std::uint32_t>(colour);
    }

  private:
    int m_opacity = 255;
    int m_roundness = 40;
    std::uint32_t m_colour = 0xFFFFFF;
    int m_borderThickness = 1;
    std::uint32_t m_borderColour = 0;

    friend struct brindle::RectangleLayoutProbe;
};

}  // namespace OV
