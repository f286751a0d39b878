// The colour dialog: its contract, the custom colours it borrows, its dropper on a fake screen and on the offscreen
// one.
#include "brindle/platform/qt/colour_dialog.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QSettings>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpinBox>
#include <array>
#include <memory>
#include <vector>

#include "brindle/platform/fake/screen_pixels_fake.h"
#include "brindle/platform/qt/colour_box_qt.h"
#include "brindle/platform/qt/custom_colour_loan.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/dialog_window.h"
#include "brindle/platform/qt/dropper_button.h"
#include "brindle/platform/qt/screen_pixels_qt.h"
#include "brindle/platform/qt/widget_test_application.h"
#include "brindle/platform/service.h"
#include "testing/colour_box_contract.h"

namespace brindle {
namespace {

using testing::Front;
using testing::NeedWidgetApplication;
using testing::Then;

void PressBoxButton(QDialogButtonBox::StandardButton which) {
    Front<SelectColourDialog>()->findChild<QDialogButtonBox*>()->button(which)->click();
}

class QtRig final : public testing::ColourBoxRig {
  public:
    QtRig() { NeedWidgetApplication(); }
    ColourBox& Service() override { return QtColourBox(); }
    void WillConfirm(std::uint32_t colour) override { Choose(colour, QDialogButtonBox::Ok); }
    void WillCancelAfterChoosing(std::uint32_t colour) override { Choose(colour, QDialogButtonBox::Cancel); }

  private:
    static void Choose(std::uint32_t colour, QDialogButtonBox::StandardButton end) {
        Then([=] {
            Front<SelectColourDialog>()->setCurrentColor(ColourOf(colour));
            PressBoxButton(end);
        });
    }
};

std::unique_ptr<testing::ColourBoxRig> MakeQtRig() {
    return std::make_unique<QtRig>();
}

class ColourDialog : public ::testing::Test {
  protected:
    ColourDialog() { NeedWidgetApplication(); }
    ~ColourDialog() override { QApplication::setLayoutDirection(Qt::LeftToRight); }

    static QPushButton* AddButton(const SelectColourDialog& dialog) {
        for (QPushButton* const button : dialog.findChildren<QPushButton*>())
            if (ControlId(*button) == kControlAddColour) return button;
        return nullptr;
    }

    FakeScreenPixels m_pixels;
    ScopedService<ScreenPixels> m_installed{&SetScreenPixels, m_pixels};
};

CustomColours SixteenFrom(std::uint32_t first) {
    CustomColours custom;
    for (std::size_t i = 0; i < custom.size(); ++i) custom[i] = first + static_cast<std::uint32_t>(i);
    return custom;
}

// Those of the whole process, and what stands of them in its file of settings.
class ProcessColours {
  public:
    ProcessColours() {
        for (int i = 0; i < 16; ++i) QColorDialog::setCustomColor(i, ColourOf(m_colours[Index(i)]));
    }
    void ExpectBack() const {
        EXPECT_EQ(QtCustomColours(), m_colours);
        QSettings settings(QSettings::UserScope, "QtProject");
        for (int i = 0; i < 16; ++i) {
            const QVariant kept = settings.value(QString("Qt/customColors/%1").arg(i));
            EXPECT_TRUE(!kept.isValid() ||
                        ReferenceOf(QColor::fromRgba(kept.toUInt())) == m_colours[Index(i)])
                << i;
        }
    }

  private:
    static std::size_t Index(int i) { return static_cast<std::size_t>(i); }
    const CustomColours m_colours = SixteenFrom(0xC86400);
};

TEST_F(ColourDialog, LendsTheCustomColoursAndGivesBackTheProcesss) {
    const ProcessColours process;
    CustomColours custom = SixteenFrom(0x400000);
    std::uint32_t colour = 0x332211;
    EXPECT_EQ(QColorDialog::customCount(), 16);
    Then([&] {
        auto* const dialog = Front<SelectColourDialog>();
        EXPECT_EQ(ReferenceOf(dialog->currentColor()), 0x332211u);
        EXPECT_TRUE(dialog->testOption(QColorDialog::DontUseNativeDialog));
        EXPECT_EQ(QtCustomColours(), SixteenFrom(0x400000));
        AddButton(*dialog)->click();
        PressBoxButton(QDialogButtonBox::Ok);
    });
    EXPECT_TRUE(QtColourBox().ChooseColour(nullptr, colour, custom));
    EXPECT_EQ(std::count(custom.begin(), custom.end(), 0x332211u), 1) << "the added one";
    process.ExpectBack();
}

TEST_F(ColourDialog, GivesThemBackWhenItsOwnerGoesMeanwhile) {
    const ProcessColours process;
    CustomColours custom = SixteenFrom(0x400000);
    std::uint32_t colour = 0x332211;
    auto* const owner = new QWidget;
    Then([&] {
        AddButton(*Front<SelectColourDialog>())->click();
        delete owner;
    });
    EXPECT_FALSE(QtColourBox().ChooseColour(HandleOf(owner), colour, custom));
    EXPECT_EQ(colour, 0x332211u);
    EXPECT_EQ(custom, SixteenFrom(0x400000));
    process.ExpectBack();
}

TEST_F(ColourDialog, SeveralGiveThemBackInAnyOrder) {
    const ProcessColours process;
    for (const std::vector<std::size_t>& order :
         {std::vector<std::size_t>{2, 1, 0}, {0, 1, 2}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {0, 2, 1}}) {
        SCOPED_TRACE(::testing::PrintToString(order));
        std::array<std::unique_ptr<SelectColourDialog>, 3> dialogs;
        for (std::size_t i = 0; i < 3; ++i)
            dialogs[i] = std::make_unique<SelectColourDialog>(
                nullptr, 0, SixteenFrom(0x400000 + 0x100 * static_cast<std::uint32_t>(i)));
        dialogs[order[0]].reset();
        dialogs[order[1]].reset();
        EXPECT_EQ(QtCustomColours(), SixteenFrom(0x400000 + 0x100 * static_cast<std::uint32_t>(order[2])));
        dialogs[order[2]].reset();
        process.ExpectBack();
    }
}

// What a user could click in must not lie over one another.
void ExpectNoOverlap(const QWidget& dialog) {
    QList<QWidget*> seen;
    for (QWidget* const each : dialog.findChildren<QWidget*>()) {
        const bool isControl = qobject_cast<QAbstractButton*>(each) || qobject_cast<QSpinBox*>(each);
        if (!isControl || !each->isVisible()) continue;
        const QRect place(each->mapTo(&dialog, QPoint(0, 0)), each->size());
        EXPECT_TRUE(dialog.rect().contains(place));
        for (QWidget* const other : seen)
            EXPECT_FALSE(place.intersects(QRect(other->mapTo(&dialog, QPoint(0, 0)), other->size())));
        seen << each;
    }
    EXPECT_GT(seen.size(), 8);
}

TEST_F(ColourDialog, TheDropperStandsBesideTheShortenedButton) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        SCOPED_TRACE(direction);
        QApplication::setLayoutDirection(direction);
        SelectColourDialog dialog(nullptr, 0);
        dialog.show();
        for (const QSize size : {dialog.size(), dialog.size() + QSize(200, 100)}) {
            dialog.resize(size);
            QApplication::processEvents();
            const QRect add = AddButton(dialog)->geometry();
            const QRect dropper = dialog.DropperButton()->geometry();
            const QRect place = AddButton(dialog)->parentWidget()->rect();
            EXPECT_EQ(dropper.size(), QSize(add.height(), add.height()));
            EXPECT_EQ(dropper.top(), add.top());
            EXPECT_EQ(add.width() + add.height() + 2, place.width());
            EXPECT_EQ(direction == Qt::LeftToRight ? dropper.left() - add.right() - 1
                                                   : add.left() - dropper.right() - 1,
                      2);
            ExpectNoOverlap(dialog);
        }
        testing::SavePicture(&dialog, direction == Qt::LeftToRight ? "colour_ltr.png" : "colour_rtl.png");
    }
}

TEST_F(ColourDialog, QtsOwnScreenPickerIsHidden) {
    SelectColourDialog dialog(nullptr, 0);
    dialog.show();
    for (const QPushButton* const button : dialog.findChildren<QPushButton*>())
        EXPECT_FALSE(button->isVisible() && button->text().contains("Screen"))
            << button->text().toStdString();
    EXPECT_EQ(ControlId(*dialog.DropperButton()), 10000u);
}

// Texts as some other language has them.
class Translation final : public QTranslator {
  public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override {
        ++m_asked;
        return changes ? QString("%1 %2").arg(source).arg(m_asked) : QString("T ") + source;
    }
    bool changes = false;

  private:
    mutable int m_asked = 0;
};

TEST_F(ColourDialog, ButtonsAreFoundInAnyLanguage) {
    Translation translation;
    QCoreApplication::installTranslator(&translation);
    {
        SelectColourDialog dialog(nullptr, 0);
        EXPECT_NE(dialog.DropperButton(), nullptr);
        translation.changes = true;
        const SelectColourDialog strange(nullptr, 0);
        EXPECT_EQ(strange.DropperButton(), nullptr) << "without the button there is no dropper";
    }
    QCoreApplication::removeTranslator(&translation);
}

class Dropping : public ColourDialog {
  protected:
    Dropping() {
        m_pixels.pixels = {{{500, 300}, 0x0000FF}, {{501, 300}, 0x00FF00}};
        m_dialog.show();
        QApplication::processEvents();
    }
    std::uint32_t Colour() const { return ReferenceOf(m_dialog.currentColor()); }
    SelectColourDialog m_dialog{nullptr, 0x808080};
};

TEST_F(Dropping, FollowsThePointerAndEndsWhereItIsReleased) {
    testing::MouseAt(&m_dialog, QEvent::MouseMove, {500, 300});
    testing::MouseAt(&m_dialog, QEvent::MouseButtonRelease, {500, 300});
    EXPECT_EQ(Colour(), 0x808080u) << "not dropping";
    testing::ClickAt(m_dialog.DropperButton());
    EXPECT_TRUE(m_dialog.IsDropping());
    EXPECT_EQ(QWidget::mouseGrabber(), &m_dialog);
    EXPECT_TRUE(m_dialog.DropperButton()->isDown());
    testing::SavePicture(&m_dialog, "dropper_pressed.png");
    testing::MouseAt(&m_dialog, QEvent::MouseMove, {500, 300});
    EXPECT_EQ(Colour(), 0x0000FFu) << "a live preview";
    testing::MouseAt(&m_dialog, QEvent::MouseButtonRelease, {501, 300}, Qt::RightButton);
    EXPECT_TRUE(m_dialog.IsDropping()) << "the left button picks";
    testing::MouseAt(&m_dialog, QEvent::MouseButtonRelease, {501, 300});
    EXPECT_EQ(Colour(), 0x00FF00u);
    EXPECT_FALSE(m_dialog.IsDropping());
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
    EXPECT_EQ(m_dialog.cursor().shape(), Qt::ArrowCursor);
    EXPECT_FALSE(m_dialog.DropperButton()->isDown());
    testing::SavePicture(&m_dialog, "dropper_raised.png");
    testing::MouseAt(&m_dialog, QEvent::MouseMove, {500, 300});
    EXPECT_EQ(Colour(), 0x00FF00u);
}

TEST_F(Dropping, WorksByKeysAlone) {
    m_dialog.DropperButton()->setFocus();
    testing::PressKey(m_dialog.DropperButton(), Qt::Key_Space, " ");
    ASSERT_TRUE(m_dialog.IsDropping());
    EXPECT_EQ(QWidget::keyboardGrabber(), &m_dialog);
    QCursor::setPos(499, 300);
    testing::PressKey(&m_dialog, Qt::Key_Right);
    EXPECT_EQ(QCursor::pos(), QPoint(500, 300));
    EXPECT_EQ(Colour(), 0x0000FFu);
    testing::PressKey(&m_dialog, Qt::Key_Down, {}, Qt::ShiftModifier);
    EXPECT_EQ(QCursor::pos(), QPoint(500, 310));
    testing::PressKey(&m_dialog, Qt::Key_Up, {}, Qt::ShiftModifier);
    testing::PressKey(&m_dialog, Qt::Key_Right);
    testing::PressKey(&m_dialog, Qt::Key_Return, "\r");
    EXPECT_FALSE(m_dialog.IsDropping());
    EXPECT_EQ(Colour(), 0x00FF00u);
    EXPECT_TRUE(m_dialog.isVisible()) << "Enter picked, and did not confirm the dialog";
}

TEST_F(Dropping, EscapeGivesTheFormerColourBack) {
    testing::ClickAt(m_dialog.DropperButton());
    testing::MouseAt(&m_dialog, QEvent::MouseMove, {500, 300});
    testing::PressKey(&m_dialog, Qt::Key_Escape);
    EXPECT_FALSE(m_dialog.IsDropping());
    EXPECT_EQ(Colour(), 0x808080u);
    EXPECT_TRUE(m_dialog.isVisible()) << "Escape ended the dropper, not the dialog";
    testing::PressKey(&m_dialog, Qt::Key_Escape);
    EXPECT_FALSE(m_dialog.isVisible());
}

TEST_F(Dropping, EndsWithTheDialog) {
    testing::ClickAt(m_dialog.DropperButton());
    m_dialog.hide();
    EXPECT_FALSE(m_dialog.IsDropping());
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    {
        SelectColourDialog dialog(nullptr, 0);
        dialog.show();
        testing::ClickAt(dialog.DropperButton());
        EXPECT_TRUE(dialog.IsDropping());
    }
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

TEST_F(ColourDialog, WherePixelsCannotBeReadTheDropperSaysWhy) {
    m_pixels.why = "Not on this desktop.";
    SelectColourDialog dialog(nullptr, 0);
    dialog.show();
    EXPECT_FALSE(dialog.DropperButton()->isEnabled());
    EXPECT_EQ(dialog.DropperButton()->toolTip(), "Not on this desktop.");
    testing::ClickAt(dialog.DropperButton());
    EXPECT_FALSE(dialog.IsDropping());
}

TEST_F(ColourDialog, TheDropperIsDrawnRaisedAndPressed) {
    QPalette palette;
    palette.setColor(QPalette::Button, QColor(1, 1, 1));
    palette.setColor(QPalette::Light, QColor(2, 2, 2));
    palette.setColor(QPalette::Dark, QColor(3, 3, 3));
    palette.setColor(QPalette::Shadow, QColor(4, 4, 4));
    struct Row {
        const char* label;
        bool pressed;
        int left, leftInside, right, rightInside;  // levels along the middle row, from each side
    };
    const std::vector<Row> rows = {{"raised", false, 2, 1, 4, 3}, {"pressed", true, 4, 3, 2, 1}};
    for (const qreal scale : {1.0, 2.0}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.label);
            const QImage image = DropperButtonPicture({24, 24}, scale, row.pressed, true, palette)
                                     .toImage()
                                     .convertToFormat(QImage::Format_RGB32);
            ASSERT_EQ(image.size(), QSize(24, 24) * scale);
            const auto level = [&](int x, int y) { return qRed(image.pixel(QPoint(x, y) * scale)); };
            for (const auto& [at, expected] :
                 {std::pair(0, row.left), {1, row.leftInside}, {23, row.right}, {22, row.rightInside}}) {
                EXPECT_EQ(level(at, 12), expected) << at;
                EXPECT_EQ(level(12, at), expected) << at;
            }
        }
        const auto raised = DropperButtonPicture({24, 24}, scale, false, true, palette).toImage();
        const auto pressed = DropperButtonPicture({24, 24}, scale, true, true, palette).toImage();
        const int side = static_cast<int>(18 * scale), at = static_cast<int>(3 * scale),
                  one = static_cast<int>(scale);
        EXPECT_EQ(raised.copy(at, at, side, side), pressed.copy(at + one, at + one, side, side))
            << "moved right and down";
        EXPECT_NE(raised, DropperButtonPicture({24, 24}, scale, false, false, palette).toImage());
    }
}

TEST_F(ColourDialog, TheCursorPointsWithItsTip) {
    const QCursor cursor = DropperCursor(2);
    EXPECT_EQ(cursor.pixmap().devicePixelRatio(), 2);
    const QImage image = cursor.pixmap().toImage();
    EXPECT_GT(qAlpha(image.pixel(cursor.hotSpot() * 2)), 0);
    EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0);
}

TEST_F(ColourDialog, TheScreensPixelsAreReadWhereTheyStand) {
    QWidget window(nullptr, Qt::FramelessWindowHint);
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(0x12, 0x34, 0x56));
    window.setPalette(palette);
    // At the screen's corner: elsewhere the offscreen platform takes units for pixels when it is scaled.
    window.setGeometry(0, 0, 200, 200);
    window.show();
    QApplication::processEvents();
    std::uint32_t colour = 0;
    EXPECT_EQ(QtScreenPixels().WhyUnavailable(), "");
    QElapsedTimer timer;
    timer.start();
    while (colour != 0x563412u && timer.elapsed() < 60'000) {
        QApplication::processEvents();
        EXPECT_TRUE(QtScreenPixels().Read({70, 80}, colour));
    }
    EXPECT_EQ(colour, 0x563412u);
    EXPECT_FALSE(QtScreenPixels().Read({-5000, 80}, colour));
    EXPECT_EQ(colour, 0x563412u);
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Qt, ColourBoxContract, ::testing::Values(&MakeQtRig));
}

}  // namespace brindle
