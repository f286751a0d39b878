// The dropper's button and cursor. Tests: colour_dialog_test.cpp.
#include "brindle/platform/qt/dropper_button.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtWidgets/QStyleOption>
#include <algorithm>

namespace brindle {
namespace {

constexpr int kCursorSize = 24;

// An eye-dropper in a square of 16 units, its tip at (1, 15): a glass tube with a drop in it, a collar, a rubber bulb.
void DrawDropper(QPainter& painter, const QRectF& square, const QColor& ink, const QColor& drop) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width() / 16, square.height() / 16);
    QPainterPath tube(QPointF(1, 15));
    for (const QPointF& point : {QPointF(1.6, 12.2), QPointF(8, 5.8), QPointF(10.2, 8), QPointF(3.8, 14.4)})
        tube.lineTo(point);
    tube.closeSubpath();
    painter.setPen(QPen(ink, 1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::white);
    painter.drawPath(tube);
    QPainterPath filled(QPointF(2, 14));
    for (const QPointF& point :
         {QPointF(2.3, 12.6), QPointF(4.2, 10.7), QPointF(7.4, 10.7), QPointF(3.5, 13.8)})
        filled.lineTo(point);
    filled.closeSubpath();
    painter.fillPath(filled, drop);
    painter.setPen(QPen(ink, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(7, 4.8), QPointF(11.2, 9));
    painter.setPen(QPen(ink, 4.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(10, 6), QPointF(12.8, 3.2));
    painter.restore();
}

// One unit wide along each side, the first two colours at the left and top, and at the right and bottom.
void DrawEdges(QPainter& painter, const QRect& rect, const QColor& leftTop, const QColor& rightBottom) {
    painter.fillRect(rect.left(), rect.top(), rect.width(), 1, leftTop);
    painter.fillRect(rect.left(), rect.top(), 1, rect.height(), leftTop);
    painter.fillRect(rect.left(), rect.bottom(), rect.width(), 1, rightBottom);
    painter.fillRect(rect.right(), rect.top(), 1, rect.height(), rightBottom);
}

}  // namespace

// Raised: dark lines along the right and the bottom, the frame above and left of them. Pressed: the other way round.
QPixmap DropperButtonPicture(QSize size, qreal scale, bool pressed, bool enabled, const QPalette& palette) {
    QPixmap picture(size * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(palette.color(QPalette::Button));
    QPainter painter(&picture);
    const QRect client(QPoint(0, 0), size);
    const QColor light = palette.color(QPalette::Light), shadow = palette.color(QPalette::Dark),
                 dark = palette.color(QPalette::Shadow);
    if (pressed) {
        DrawEdges(painter, client.adjusted(1, 1, 0, 0), shadow, light);
        painter.fillRect(0, 0, client.width(), 1, dark);
        painter.fillRect(0, 0, 1, client.height(), dark);
    } else {
        DrawEdges(painter, client.adjusted(0, 0, -1, -1), light, shadow);
        painter.fillRect(0, client.bottom(), client.width(), 1, dark);
        painter.fillRect(client.right(), 0, 1, client.height(), dark);
    }
    const QRect inside = client.adjusted(2, 2, -2, -2).translated(pressed ? 1 : 0, pressed ? 1 : 0);
    const int side = std::min(inside.width(), inside.height());
    const QRect square(inside.center() - QPoint((side - 1) / 2, (side - 1) / 2), QSize(side, side));
    const QColor ink = palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText);
    DrawDropper(painter, QRectF(square).adjusted(1, 1, -1, -1), ink,
                enabled ? QColor(0x20, 0x78, 0xD0) : ink);
    return picture;
}

QCursor DropperCursor(qreal scale) {
    QPixmap picture(QSize(kCursorSize, kCursorSize) * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    DrawDropper(painter, QRectF(0, 0, kCursorSize, kCursorSize), Qt::black, QColor(0x20, 0x78, 0xD0));
    painter.end();
    return QCursor(picture, kCursorSize / 16, kCursorSize - 1 - kCursorSize / 16);
}

CDropperButton::CDropperButton(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CDropperButton::sizeHint() const {
    return {kCursorSize, kCursorSize};
}

void CDropperButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawPixmap(
        0, 0,
        DropperButtonPicture(size(), devicePixelRatioF(), isDown() || isChecked(), isEnabled(), palette()));
    if (!hasFocus()) return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = rect().adjusted(3, 3, -3, -3);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

}  // namespace brindle
