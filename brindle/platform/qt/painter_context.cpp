// A device context on a painter. Tests: painter_surface_test.cpp.
#include "brindle/platform/qt/painter_context.h"

#include "brindle/platform/qt/painter_surface.h"

namespace brindle {

PainterContext::PainterContext(QPainter& painter)
    : m_surface(std::make_unique<PainterSurface>(painter)), m_dc(*m_surface) {}

PainterContext::~PainterContext() = default;

}  // namespace brindle
