// CDropperButton: the square button that begins picking a colour from the screen, drawn by itself; and its picture as a
// cursor.
#pragma once

#include <QtGui/QCursor>
#include <QtGui/QPixmap>
#include <QtWidgets/QAbstractButton>

namespace brindle {

class CDropperButton final : public QAbstractButton {
  public:
    explicit CDropperButton(QWidget* parent);
    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

// What the button shows, in the colours of the palette, for a screen of `scale` pixels a unit.
QPixmap DropperButtonPicture(QSize size, qreal scale, bool pressed, bool enabled, const QPalette& palette);
// Its hot spot is the dropper's tip.
QCursor DropperCursor(qreal scale);

}  // namespace brindle
