// Qt's custom colours on loan. Tests: colour_dialog_test.cpp.
#include "brindle/platform/qt/custom_colour_loan.h"

#include <QtWidgets/QColorDialog>
#include <algorithm>

#include "brindle/platform/qt/widget_text.h"

namespace brindle {
namespace {

constinit CustomColourLoan* g_latest = nullptr;  // its colours are Qt's now

std::size_t LentCount() {
    return std::min(static_cast<std::size_t>(QColorDialog::customCount()), std::tuple_size_v<CustomColours>);
}

}  // namespace

CustomColourLoan::CustomColourLoan(const CustomColours& custom) : m_below(g_latest) {
    for (std::size_t i = 0; i < LentCount(); ++i) {
        const int well = static_cast<int>(i);
        m_before[i] = QColorDialog::customColor(well);
        QColorDialog::setCustomColor(well, ColourOf(custom[i]));
    }
    g_latest = this;
}

CustomColourLoan::~CustomColourLoan() {
    if (g_latest == this) {
        for (std::size_t i = 0; i < LentCount(); ++i)
            QColorDialog::setCustomColor(static_cast<int>(i), m_before[i]);
        g_latest = m_below;
        return;
    }
    CustomColourLoan* above = g_latest;
    while (above->m_below != this) above = above->m_below;
    above->m_before = m_before;
    above->m_below = m_below;
}

CustomColours QtCustomColours() {
    CustomColours custom{};
    for (std::size_t i = 0; i < LentCount(); ++i)
        custom[i] = ReferenceOf(QColorDialog::customColor(static_cast<int>(i)));
    return custom;
}

}  // namespace brindle
