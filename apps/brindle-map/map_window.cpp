// The window. Tests: map_window_test.cpp.
#include "apps/brindle-map/map_window.h"

#include <brindle/library/host_text.h>
#include <brindle/platform/qt/painter_context.h>

#include <QtGui/QAccessible>
#include <QtGui/QCloseEvent>
#include <QtGui/QHelpEvent>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QToolTip>

#include <algorithm>
#include <optional>

namespace brindle::map {

using host::MapDirection;

namespace {

constexpr int kLeastSide = 120;

std::optional<MapDirection> DirectionOf(int key) noexcept {
    switch (key) {
        case Qt::Key_Left:
            return MapDirection::kLeft;
        case Qt::Key_Right:
            return MapDirection::kRight;
        case Qt::Key_Up:
            return MapDirection::kUp;
        case Qt::Key_Down:
            return MapDirection::kDown;
        default:
            return {};
    }
}

bool IsPress(int key) noexcept {
    return key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

MapWindow::MapWindow(host::MapView& view, const QString& title, double scale) : m_view(&view) {
    setWindowTitle(title);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(kLeastSide, kLeastSide);
    m_view->SetScale(scale);
    const CSize size = m_view->Size();
    resize(size.cx, size.cy);
}

void MapWindow::ShowMap(host::MapView& view, const QString& title) {
    m_view = &view;
    setWindowTitle(title);
    Fit();
    if (!QAccessible::isActive()) return;
    QAccessibleEvent changed(this, QAccessible::ObjectReorder);
    QAccessible::updateAccessibility(&changed);
}

void MapWindow::Fit() {
    const host::MapDocument& map = m_view->Document();
    m_view->SetScale(
        std::min(width() / static_cast<double>(map.width), height() / static_cast<double>(map.height)));
    const CSize size = m_view->Size();
    m_corner = QPoint((width() - size.cx) / 2, (height() - size.cy) / 2);
    update();
}

QRect MapWindow::InWindow(const CRect& place) const {
    return QRect(place.left, place.top, place.Width(), place.Height()).translated(m_corner);
}

CPoint MapWindow::InMap(const QPoint& point) const {
    return {point.x() - m_corner.x(), point.y() - m_corner.y()};
}

void MapWindow::Refresh() {
    m_view->Refresh();
    UpdateDirty();
}

void MapWindow::UpdateDirty() {
    for (const CRect& place : m_view->TakeDirty()) update(InWindow(place));
}

void MapWindow::Press(std::size_t target) {
    m_view->Press(target);
    Refresh();
}

void MapWindow::MoveFocus(MapDirection direction) {
    m_view->MoveFocus(direction);
    Refresh();
    const auto focus = m_view->Focus();
    if (!focus || !QAccessible::isActive()) return;
    QAccessibleEvent moved(this, QAccessible::Focus);
    moved.setChild(static_cast<int>(*focus));
    QAccessible::updateAccessibility(&moved);
}

bool MapWindow::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    ShowToolTip(help->pos(), help->globalPos());
    return true;
}

void MapWindow::ShowToolTip(const QPoint& at, const QPoint& global) {
    const auto target = m_view->TargetAt(InMap(at));
    if (!target) return QToolTip::hideText();
    const host::MapTarget found = m_view->Targets()[*target];
    QToolTip::showText(global, QString::fromStdString(TextToSystem(found.name.view())), this,
                       InWindow(found.bounds));
}

// Tab stays on the map: there is nothing else in the window.
bool MapWindow::focusNextPrevChild(bool next) {
    MoveFocus(next ? MapDirection::kNext : MapDirection::kPrevious);
    return true;
}

void MapWindow::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const CSize size = m_view->Size();
    const QRect map(m_corner, QSize(size.cx, size.cy));
    for (const QRect& beside : event->region().subtracted(map)) painter.fillRect(beside, Qt::black);
    painter.translate(m_corner);
    PainterContext context(painter);
    for (const QRect& changed : event->region().intersected(map)) {
        const QRect place = changed.translated(-m_corner);
        m_view->Draw(context.DC(),
                     {place.left(), place.top(), place.left() + place.width(), place.top() + place.height()});
    }
}

void MapWindow::resizeEvent(QResizeEvent*) {
    Fit();
}

void MapWindow::closeEvent(QCloseEvent* event) {
    m_closed = true;
    event->accept();
    if (m_onClose) m_onClose();
}

void MapWindow::mouseMoveEvent(QMouseEvent* event) {
    const CPoint point = InMap(event->position().toPoint());
    m_view->OnMouseMove(point);
    setCursor(m_view->IsClickable(point) ? Qt::PointingHandCursor : Qt::ArrowCursor);
    Refresh();
}

void MapWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_view->OnMouseDown(InMap(event->position().toPoint()));
    Refresh();
}

void MapWindow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_view->OnMouseUp(InMap(event->position().toPoint()));
    Refresh();
}

void MapWindow::leaveEvent(QEvent*) {
    m_view->OnMouseLeave();
    Refresh();
}

void MapWindow::keyPressEvent(QKeyEvent* event) {
    const auto focus = m_view->Focus();
    if (const auto direction = DirectionOf(event->key())) {
        MoveFocus(*direction);
    } else if (IsPress(event->key()) && focus) {
        if (!event->isAutoRepeat()) Press(*focus);
    } else if (event->key() == Qt::Key_Escape && focus) {
        m_view->SetFocus({});
        Refresh();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace brindle::map
