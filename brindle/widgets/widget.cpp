// OV::Widget: flags of the mouse, and the lightening of colours. Tests: widget_test.cpp.
#include "brindle/widgets/widget.h"

#include <cstdint>

namespace OV {
namespace {

std::uint32_t LighterChannel(std::uint32_t channel, double factor) noexcept {
    const double lighter = (255.0 - channel) * factor + channel;
    // Beyond 32 bits, and for what is no number, there are no low bits.
    if (!(lighter > -2147483649.0 && lighter < 2147483648.0)) return 0;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(lighter)) & 0xFF;
}

}  // namespace

Widget::~Widget() = default;

bool Widget::OnMouseOver(CPoint) {
    OnMouseOver();
    return false;
}

void Widget::OnMouseOver() {
    m_mouseOver = true;
}

void Widget::OnMouseOut() {
    m_mouseOver = false;
}

bool Widget::OnMouseDown(CPoint) {
    OnMouseDown();
    return false;
}

void Widget::OnMouseDown() {
    m_pressed = true;
}

bool Widget::OnMouseUp(CPoint) {
    OnMouseUp();
    return false;
}

void Widget::OnMouseUp() {
    m_pressed = false;
}

unsigned long Widget::Lighter(unsigned long colour, double factor) noexcept {
    const auto bits = static_cast<std::uint32_t>(colour);
    std::uint32_t lighter = 0;
    for (unsigned shift = 0; shift < 24; shift += 8)
        lighter |= LighterChannel((bits >> shift) & 0xFF, factor) << shift;
    return lighter;
}

}  // namespace OV
