// CustomColourLoan: Qt's sixteen custom colours, which it keeps for the whole process, lent to one dialog of ours.
// Internal; thread: the user interface's. Tests: colour_dialog_test.cpp.
#pragma once

#include <QtGui/QColor>
#include <array>

#include "brindle/platform/colour_box.h"

namespace brindle {

// Qt's custom colours are `custom` while this lives, and afterwards what they were. Loans may end in any order: one
// that another was made upon leaves it what was there before.
class CustomColourLoan {
  public:
    explicit CustomColourLoan(const CustomColours& custom);
    CustomColourLoan(const CustomColourLoan&) = delete;
    CustomColourLoan& operator=(const CustomColourLoan&) = delete;
    ~CustomColourLoan();

  private:
    std::array<QColor, std::tuple_size_v<CustomColours>> m_before;
    CustomColourLoan* m_below;
};

// What Qt's custom colours are now.
CustomColours QtCustomColours();

}  // namespace brindle
