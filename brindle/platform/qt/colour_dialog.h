// SelectColourDialog: Qt's colour dialog in its own form, with a dropper that picks a colour from anywhere on the
// screen in place of its own button for that.
#pragma once

#include <QtWidgets/QColorDialog>
#include <cstdint>

#include "brindle/platform/dropper.h"
#include "brindle/platform/qt/custom_colour_loan.h"
#include "brindle/platform/qt/widget_text.h"

class QPushButton;

namespace brindle {

class CDropperButton;

// Numbers of two buttons, as hosts know them.
constexpr unsigned kControlAddColour = 712;
constexpr unsigned kControlDropper = 10000;

class SelectColourDialog final : public QColorDialog, private DropperHost {
  public:
    // Borrows Qt's custom colours, which are `custom` until this goes.
    SelectColourDialog(QWidget* owner, std::uint32_t colour, const CustomColours& custom = {});
    ~SelectColourDialog() override;

    bool IsDropping() const noexcept { return m_dropper.IsDropping(); }
    // Null when the dialog has no button to add custom colours, beside which it would stand.
    CDropperButton* DropperButton() const noexcept { return m_button; }

  protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    void AddDropper(QPushButton* addColour);
    bool Steer(int key, int step);

    void CaptureMouse() override;
    void ReleaseMouse() override;
    std::uint32_t CurrentColour() override { return ReferenceOf(currentColor()); }
    void SetCurrentColour(std::uint32_t colour) override { setCurrentColor(ColourOf(colour)); }

    CustomColourLoan m_loan;  // over before Qt's part of the dialog goes, which writes the colours to a file
    Dropper m_dropper{*this};
    QPushButton* m_addColour = nullptr;
    CDropperButton* m_button = nullptr;
};

}  // namespace brindle
