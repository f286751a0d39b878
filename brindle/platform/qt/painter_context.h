// PainterContext: a device context on a painter of Qt 6.
//
//   void MapView::paintEvent(QPaintEvent*) {
//       QPainter painter(this);
//       brindle::PainterContext context(painter);
//       button.Draw(&context.DC(), scale);
//   }
//
// Thread: the user interface's.
#pragma once

#include <memory>

#include "brindle/framework/export.h"
#include "brindle/framework/ui/dc.h"

class QPainter;

namespace brindle {

class PainterSurface;

// A device context on a painter, which is active, stays the caller's and is not otherwise used meanwhile. What the
// painter was set to comes back at the end. Without a QGuiApplication shapes are drawn and text is left out.
class BRINDLE_API PainterContext {
  public:
    // Draws on the painter from now on.
    explicit PainterContext(QPainter& painter);
    PainterContext(const PainterContext&) = delete;
    PainterContext& operator=(const PainterContext&) = delete;
    ~PainterContext();

    CDC& DC() noexcept { return m_dc; }

  private:
    std::unique_ptr<PainterSurface> m_surface;
    CDC m_dc;
};

}  // namespace brindle
