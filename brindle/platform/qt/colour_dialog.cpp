// The colour dialog with its dropper. Tests: colour_dialog_test.cpp, and screen_x11_test.cpp on a real server.
#include "brindle/platform/qt/colour_dialog.h"

#include <QtGui/QCursor>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QPushButton>

#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/dropper_button.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

constexpr int kGap = 2;        // between the add button and the dropper
constexpr int kLongStep = 10;  // of the pointer, with Shift

// By the text that Qt gives it, in whatever language.
QPushButton* ButtonOf(const QWidget& dialog, const char* text) {
    const QString wanted = QColorDialog::tr(text);
    for (QPushButton* const button : dialog.findChildren<QPushButton*>())
        if (button->text() == wanted) return button;
    return nullptr;
}

CPoint Place(const QPoint& point) {
    return {point.x(), point.y()};
}

}  // namespace

SelectColourDialog::SelectColourDialog(QWidget* owner, std::uint32_t colour, const CustomColours& custom)
    : QColorDialog(owner), m_loan(custom) {
    setOption(DontUseNativeDialog);
    setCurrentColor(ColourOf(colour));
    if (QPushButton* const own = ButtonOf(*this, "&Pick Screen Color")) own->hide();
    if (QPushButton* const addColour = ButtonOf(*this, "&Add to Custom Colors")) AddDropper(addColour);
}

SelectColourDialog::~SelectColourDialog() {
    m_dropper.Cancel();
}

// The two stand in the add button's place: that button shortened by the square and the gap, the square at its end.
void SelectColourDialog::AddDropper(QPushButton* addColour) {
    m_addColour = addColour;
    auto* const place = new QWidget(this);
    delete layout()->replaceWidget(addColour, place, Qt::FindChildrenRecursively);
    m_button = new CDropperButton(place);
    auto* const row = new QHBoxLayout(place);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kGap);
    row->addWidget(addColour, 1);
    row->addWidget(m_button);
    SetControlId(*addColour, kControlAddColour);
    SetControlId(*m_button, kControlDropper);
    setTabOrder(addColour, m_button);
    addColour->installEventFilter(this);
    m_button->setFixedSize(addColour->sizeHint().height(), addColour->sizeHint().height());
    const QString why = QtText(CurrentScreenPixels().WhyUnavailable());
    m_button->setEnabled(why.isEmpty());
    m_button->setAccessibleName("Pick a colour from the screen");
    m_button->setToolTip(why.isEmpty()
                             ? "Pick a colour from the screen: click here, then click the colour. With "
                               "the keyboard: arrow keys, Enter, Escape."
                             : why);
    connect(m_button, &QAbstractButton::clicked, this, [this] { m_dropper.Begin(); });
}

bool SelectColourDialog::eventFilter(QObject* object, QEvent* event) {
    if (object == m_addColour && event->type() == QEvent::Resize)
        m_button->setFixedSize(m_addColour->height(), m_addColour->height());
    return QColorDialog::eventFilter(object, event);
}

void SelectColourDialog::CaptureMouse() {
    m_button->setDown(true);
    setMouseTracking(true);  // moves count without a button held
    grabMouse(DropperCursor(devicePixelRatioF()));
    grabKeyboard();
}

void SelectColourDialog::ReleaseMouse() {
    releaseKeyboard();
    releaseMouse();
    setMouseTracking(false);
    setCursor(Qt::ArrowCursor);
    m_button->setDown(false);
}

void SelectColourDialog::mouseMoveEvent(QMouseEvent* event) {
    if (!m_dropper.Move(Place(event->globalPosition().toPoint()))) QColorDialog::mouseMoveEvent(event);
}

void SelectColourDialog::mouseReleaseEvent(QMouseEvent* event) {
    const bool left = event->button() == Qt::LeftButton;
    if (!left || !m_dropper.Release(Place(event->globalPosition().toPoint())))
        QColorDialog::mouseReleaseEvent(event);
}

// While dropping the keyboard does what the mouse does.
void SelectColourDialog::keyPressEvent(QKeyEvent* event) {
    if (!m_dropper.IsDropping()) return QColorDialog::keyPressEvent(event);
    const int step = event->modifiers().testFlag(Qt::ShiftModifier) ? kLongStep : 1;
    switch (event->key()) {
        case Qt::Key_Escape:
            m_dropper.Cancel();
            break;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            m_dropper.Release(Place(QCursor::pos()));
            break;
        default:
            Steer(event->key(), step);
    }
    event->accept();
}

// Moves the pointer; false for other keys than arrows.
bool SelectColourDialog::Steer(int key, int step) {
    const int x = key == Qt::Key_Right ? step : key == Qt::Key_Left ? -step : 0;
    const int y = key == Qt::Key_Down ? step : key == Qt::Key_Up ? -step : 0;
    if (x == 0 && y == 0) return false;
    QCursor::setPos(QCursor::pos() + QPoint(x, y));
    m_dropper.Move(Place(QCursor::pos()));
    return true;
}

void SelectColourDialog::hideEvent(QHideEvent* event) {
    m_dropper.Cancel();
    QColorDialog::hideEvent(event);
}

}  // namespace brindle
