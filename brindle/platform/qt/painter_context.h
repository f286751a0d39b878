// What a desktop host on Qt 6 uses: a device context on its painter, and the desktop's services.
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

// Puts Qt's services in place for the whole process: the resolution of the primary screen, pictures, timers that tick
// in Qt's event loop (without an application object they stay in the plain one), message and file boxes, dialogs, the
// colour dialog, the pixels of the screen. Windows need a QApplication; with a lesser application object messages are
// lines on the standard error, and no dialog can be shown. May be called again; best once the application object is
// made.
BRINDLE_API void InstallQtServices();

}  // namespace brindle
