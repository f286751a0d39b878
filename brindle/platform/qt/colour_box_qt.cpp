// The colour dialog's service on Qt widgets.
//
// Can: Qt's own dialog with a dropper; the platform's would have neither dropper nor sixteen custom colours. Qt keeps
// custom colours for the whole process, and writes them to a file of its own when a dialog goes: ours borrows them and
// gives them back before that, however it ends. Cannot: anything without a QApplication. Tests: colour_dialog_test.cpp.
#include "brindle/platform/qt/colour_box_qt.h"

#include <QtCore/QPointer>

#include "brindle/platform/qt/colour_dialog.h"
#include "brindle/platform/qt/custom_colour_loan.h"
#include "brindle/platform/qt/dialog_templates.h"
#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

class ColourBoxOnQt final : public ColourBox {
  public:
    bool ChooseColour(HWND owner, std::uint32_t& colour, CustomColours& custom) override {
        if (!WidgetsAvailable()) return false;
        QWidget* const parent = WidgetOf(owner);
        // Goes with its owner, should that go meanwhile.
        const QPointer<SelectColourDialog> dialog =
            new SelectColourDialog(parent ? parent->window() : nullptr, colour, custom);
        const bool confirmed = dialog->exec() == QDialog::Accepted && dialog;
        if (confirmed) {
            colour = ReferenceOf(dialog->selectedColor());
            custom = QtCustomColours();
        }
        delete dialog;
        return confirmed;
    }
};

constinit ColourBoxOnQt g_colourBoxOnQt;

}  // namespace

ColourBox& QtColourBox() noexcept {
    return g_colourBoxOnQt;
}

}  // namespace brindle
