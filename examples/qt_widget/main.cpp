// A desktop host on Qt: a window that draws two of the library's controls and tells them of the mouse.
// usage: qt_widget [PICTURE]      with PICTURE: draws the window into that file and ends
#include <brindle/brindle.h>
#include <brindle/platform/qt/painter_context.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

class Window final : public QWidget {
  public:
    Window() {
        setMouseTracking(true);
        resize(320, 120);
        m_title.SetBounds({10, 10, 310, 40});
        m_title.SetText("Studio A");
        m_onAir.SetBounds({10, 50, 310, 110});
        m_onAir.SetText("ON AIR");
        m_onAir.SetColor(0x2020C0);  // 0x00BBGGRR: red
        m_onAir.SetFontColor(0xFFFFFF);
        m_onAir.SetHighlightFontColor(0x80FFFF);
        m_onAir.EnableFontHighlighting(true);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        brindle::PainterContext context(painter);
        m_title.Draw(&context.DC(), 1);
        m_onAir.Draw(&context.DC(), 1);
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        const CRect& bounds = m_onAir.GetBounds();
        if (QRect(bounds.left, bounds.top, bounds.Width(), bounds.Height()).contains(event->pos())) {
            m_onAir.OnMouseOver(CPoint{event->pos().x(), event->pos().y()});
        } else {
            m_onAir.OnMouseOut();
        }
        update();
    }

  private:
    OV::Text m_title;
    OV::Rectangle m_onAir;
};

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    brindle::InstallQtServices();
    Window window;
    if (count > 1) return window.grab().save(arguments[1]) ? 0 : 1;
    window.show();
    return QApplication::exec();
}
