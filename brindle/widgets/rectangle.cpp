// OV::Rectangle. Tests: rectangle_test.cpp.
#include "brindle/widgets/rectangle.h"

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/drawing_surface.h"
#include "brindle/widgets/kept_bounds.h"
#include "brindle/widgets/rounded_rectangle.h"

namespace OV {
namespace {

constexpr int kCaptionMargin = 2;  // between outline and caption, above and below

}  // namespace

Rectangle::Rectangle() = default;
Rectangle::Rectangle(const Rectangle& other) = default;
Rectangle& Rectangle::operator=(const Rectangle& other) = default;
Rectangle::~Rectangle() = default;

void Rectangle::Draw(CDC* dc, double scale) {
    if (!dc) return;
    // Kept: unlike a frame or a button it is neither moved by half a unit nor one unit smaller than its bounds.
    const brindle::ShapePath path =
        brindle::RoundedRectangle(brindle::AreaOf(m_bounds), brindle::CornerRadius(m_bounds, m_roundness));
    {
        const brindle::ShapeScope shapes(dc->Surface(), true);
        dc->Surface().FillPath(path, brindle::Paint::Solid(brindle::ArgbOf(m_colour, m_opacity)));
        if (m_borderThickness > 0)
            dc->Surface().DrawPath(
                path, {brindle::ArgbOf(m_borderColour, m_opacity), static_cast<float>(m_borderThickness)});
    }
    const brindle::KeptBounds kept(*this);
    m_bounds.DeflateRect(0, m_borderThickness);
    m_bounds.DeflateRect(0, kCaptionMargin);
    Text::Draw(dc, scale);
}

}  // namespace OV
