// The colour dialog's service on Qt widgets.
//
// Can: Qt's own dialog with a dropper; the platform's would have neither dropper nor sixteen custom colours. Qt keeps
// custom colours for the whole process, and writes them to a file of its own when a dialog goes: they are lent for the
// dialog and as before when it goes. Cannot: anything without a QApplication. Tests: colour_dialog_test.cpp.
#include "brindle/platform/qt/colour_box_qt.h"

#include <QtCore/QPointer>
#include <algorithm>
#include <memory>

#include "brindle/platform/qt/colour_dialog.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

int LentCount() {
    return std::min(QColorDialog::customCount(), static_cast<int>(std::tuple_size_v<CustomColours>));
}

// Qt's custom colours are `custom` while this lives.
class CustomColourLoan {
  public:
    explicit CustomColourLoan(const CustomColours& custom) {
        for (int i = 0; i < LentCount(); ++i) {
            m_before[static_cast<std::size_t>(i)] = QColorDialog::customColor(i);
            QColorDialog::setCustomColor(i, ColourOf(custom[static_cast<std::size_t>(i)]));
        }
    }
    CustomColourLoan(const CustomColourLoan&) = delete;
    CustomColourLoan& operator=(const CustomColourLoan&) = delete;
    ~CustomColourLoan() {
        for (int i = 0; i < LentCount(); ++i)
            QColorDialog::setCustomColor(i, m_before[static_cast<std::size_t>(i)]);
    }

    void Read(CustomColours& custom) const {
        for (int i = 0; i < LentCount(); ++i)
            custom[static_cast<std::size_t>(i)] = ReferenceOf(QColorDialog::customColor(i));
    }

  private:
    std::array<QColor, std::tuple_size_v<CustomColours>> m_before;
};

class ColourBoxOnQt final : public ColourBox {
  public:
    bool ChooseColour(HWND owner, std::uint32_t& colour, CustomColours& custom) override {
        if (!WidgetsAvailable()) return false;
        QWidget* const parent = WidgetOf(owner);
        QPointer<SelectColourDialog> dialog;
        bool confirmed = false;
        {
            const CustomColourLoan loan(custom);
            dialog = new SelectColourDialog(parent ? parent->window() : nullptr, colour);
            confirmed = dialog->exec() == QDialog::Accepted && dialog;
            if (confirmed) {
                colour = ReferenceOf(dialog->selectedColor());
                loan.Read(custom);
            }
        }
        delete dialog;  // the loan is over
        return confirmed;
    }
};

constinit ColourBoxOnQt g_colourBoxOnQt;

}  // namespace

ColourBox& QtColourBox() noexcept {
    return g_colourBoxOnQt;
}

}  // namespace brindle
