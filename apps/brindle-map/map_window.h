// MapWindow: a map in a window of the desktop: as large as fits, in the middle; drawn anew where it changed; pressed by
// mouse, keyboard and assistive software (map_accessible.h).
#pragma once

#include <QtWidgets/QWidget>

#include <functional>

#include "host/map_view.h"

namespace brindle::map {

class MapWindow final : public QWidget {
  public:
    // The view is borrowed. The window has the map's size at `scale`; it is not shown yet.
    MapWindow(host::MapView& view, const QString& title, double scale);

    // Lets the view show what has happened, and paints what changed soon.
    void Refresh();
    // Another view, as large as the window has it.
    void ShowMap(host::MapView& view, const QString& title);
    // The view was given another map.
    void Fit();
    bool IsClosed() const noexcept { return m_closed; }
    // Called when the window has been closed.
    void SetOnClose(std::function<void()> closed) { m_onClose = std::move(closed); }

    host::MapView& View() const noexcept { return *m_view; }
    // A place of the map, in the window.
    QRect InWindow(const CRect& place) const;
    CPoint InMap(const QPoint& point) const;
    // As a press by hand.
    void Press(std::size_t target);
    void MoveFocus(host::MapDirection direction);

  protected:
    bool event(QEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void UpdateDirty();
    void ShowToolTip(const QPoint& at, const QPoint& global);

    host::MapView* m_view;
    QPoint m_corner;  // of the map in the window
    bool m_closed = false;
    std::function<void()> m_onClose;
};

}  // namespace brindle::map
