// A desktop host on Qt: a window with a caption and a button of the library. The window tells the button of the mouse
// and acts on its clicks. usage: qt_widget [PICTURE]      with PICTURE: clicks once, draws itself into it, and ends
#include <brindle/brindle.h>
#include <brindle/platform/qt/painter_context.h>
#include <brindle/platform/qt/qt_services.h>

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

class Window final : public QWidget {
  public:
    Window() {
        resize(320, 120);
        m_title.SetBounds({10, 10, 310, 40});
        m_title.SetText("Studio A");
        m_onAir.SetBounds(
            {m_place.x(), m_place.y(), m_place.x() + m_place.width(), m_place.y() + m_place.height()});
        m_onAir.SetText("ON AIR");
        m_onAir.SetFillMode(OV::Button::FillSolid);
        m_onAir.SetSelectedMode(OV::Button::SelectedColour);
        m_onAir.SetSelectedColor(0x2020C0);  // 0x00BBGGRR: red
        m_onAir.SetFontColor(0xFFFFFF);
    }
    void Click() { m_onAir.SetSelected(!m_onAir.IsSelected()); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        brindle::PainterContext context(painter);
        m_title.Draw(&context.DC(), 1);
        m_onAir.Draw(&context.DC(), 1);
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (m_place.contains(event->pos())) m_onAir.OnMouseDown(CPoint{event->pos().x(), event->pos().y()});
        update();
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        m_onAir.OnMouseUp();
        if (m_place.contains(event->pos())) Click();
        update();
    }

  private:
    const QRect m_place{10, 50, 300, 60};  // of the button
    OV::Text m_title;
    OV::Button m_onAir;
};

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    brindle::InstallQtServices();
    Window window;
    if (count > 1) return window.Click(), window.grab().save(arguments[1]) ? 0 : 1;
    window.show();
    return QApplication::exec();
}
