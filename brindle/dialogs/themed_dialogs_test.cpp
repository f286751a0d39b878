// Greyed texts of the three themed classes, over the fake windows.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <type_traits>
#include <vector>

#include "brindle/dialogs/themed_dlg.h"
#include "brindle/dialogs/themed_ole_property_page.h"
#include "brindle/dialogs/themed_property_page.h"
#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/dialogs_fake.h"
#include "brindle/platform/fake/recording_surface.h"
#include "brindle/platform/service.h"

namespace {

using brindle::FakeDialogs;

constexpr unsigned kTemplate = 100, kText = 10, kOther = 11, kEdit = 12;

TEST(Midpoint, Rows) {
    struct Row {
        const char* label;
        std::uint32_t a, b, expected;
    };
    const std::vector<Row> rows = {
        {"black and black", 0, 0, 0},
        {"white and white", 0xFFFFFF, 0xFFFFFF, 0xFFFFFF},
        {"the usual", 0xF0F0F0, 0, 0x787878},
        {"odd sums are rounded up", 0x010203, 0x000000, 0x010102},
        {"channel by channel", 0x00FF80, 0xFF0000, 0x808040},
        {"nothing above 24 bits", 0xFF000000, 0xFF000000, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(brindle::Midpoint(row.a, row.b), row.expected);
        EXPECT_EQ(brindle::Midpoint(row.b, row.a), row.expected);
    }
}

template <class T>
class Open : public T {
  public:
    Open() : T(kTemplate, Second()) { this->Create(kTemplate); }
    using T::OnCtlColor;

  private:
    static auto Second() {
        if constexpr (std::is_same_v<T, CThemedDlg>) {
            return static_cast<CWnd*>(nullptr);
        } else {
            return 0u;
        }
    }
};

template <class T>
class Themed : public ::testing::Test {
  protected:
    Themed() {
        m_dialogs.templates[kTemplate] = {"Title",
                                          {{kText, brindle::kKindStatic, "Text"},
                                           {kOther, brindle::kKindStatic, "Other"},
                                           {kEdit, brindle::kKindEdit, "Edit"}}};
        m_dialogs.colours = {{brindle::kColourButtonFace, 0xC8D0D4}, {brindle::kColourWindowText, 0x000010}};
    }
    std::uint32_t Drawn(CDialog& dialog, unsigned control) {
        return m_dialogs.DrawnColour(dialog.GetDlgItem(control)->GetSafeHwnd());
    }
    FakeDialogs::Item& Control(CDialog& dialog, unsigned control) {
        return *m_dialogs.Find(dialog.GetDlgItem(control)->GetSafeHwnd());
    }

    static constexpr std::uint32_t kNormal = 0x000010, kGrey = 0x646872;
    FakeDialogs m_dialogs;
    brindle::ScopedService<brindle::Dialogs> m_installed{&brindle::SetDialogs, m_dialogs};
};
using Classes = ::testing::Types<CThemedDlg, CThemedPropertyPage, CThemedOlePropertyPage>;
TYPED_TEST_SUITE(Themed, Classes);

TYPED_TEST(Themed, TextsAreGreyedOneByOne) {
    Open<TypeParam> dialog;
    EXPECT_EQ(this->Drawn(dialog, kText), this->kNormal);
    dialog.EnableText(kText, 0);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kGrey);
    EXPECT_EQ(this->Drawn(dialog, kOther), this->kNormal);
    EXPECT_TRUE(this->Control(dialog, kText).enabled) << "only its text looks greyed";
    dialog.EnableText(kText, 1);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kNormal);
    dialog.EnableText(kText, 0);
    dialog.EnableText(kText, -5);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kNormal) << "anything but 0 enables";
}

TYPED_TEST(Themed, OnlyStaticControlsAreGreyed) {
    Open<TypeParam> dialog;
    dialog.EnableText(kEdit, 0);
    EXPECT_EQ(this->Drawn(dialog, kEdit), this->kNormal);
    dialog.EnableText(kText, 0);
    brindle::RecordingSurface surface;
    CDC context(surface);
    for (unsigned kind = 0; kind < 10; ++kind) {
        SCOPED_TRACE(kind);
        context.SetTextColor(0x111111);
        EXPECT_EQ(dialog.OnCtlColor(&context, dialog.GetDlgItem(kText), kind),
                  this->m_dialogs.ControlBrush(kind))
            << "the framework's brush";
        EXPECT_EQ(context.GetTextColor(), kind == 6 ? this->kGrey : 0x111111u);
    }
    EXPECT_EQ(dialog.OnCtlColor(nullptr, dialog.GetDlgItem(kText), 6), this->m_dialogs.ControlBrush(6));
    EXPECT_EQ(dialog.OnCtlColor(&context, nullptr, 6), this->m_dialogs.ControlBrush(6));
}

TYPED_TEST(Themed, AGreyedTextIsDrawnAnewWithItsGround) {
    Open<TypeParam> dialog;
    dialog.EnableText(kText, 0);
    EXPECT_EQ(this->Control(dialog, kText).erased, 1);
    EXPECT_EQ(this->Control(dialog, kOther).invalidated, 0);
    dialog.EnableText(kText, 1);
    EXPECT_EQ(this->Control(dialog, kText).erased, 2);
}

TYPED_TEST(Themed, UnknownControlsChangeNothing) {
    Open<TypeParam> dialog;
    dialog.EnableText(999, 0);
    dialog.DestroyWindow();
    dialog.EnableText(kText, 0);
    dialog.Create(kTemplate);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kNormal);
}

TYPED_TEST(Themed, EnablersDoTheSame) {
    Open<TypeParam> dialog;
    CWindowEnabler<TypeParam>* const enabler = dialog.GetDlgTextEnabler(kText);
    EXPECT_EQ(enabler, dialog.GetDlgTextEnabler(kText)) << "one for each control";
    EXPECT_NE(enabler, dialog.GetDlgTextEnabler(kOther));
    EXPECT_EQ(enabler, dialog.GetDlgTextEnabler(kText)) << "and it stays";
    enabler->EnableWindow(0);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kGrey);
    EXPECT_EQ(this->Drawn(dialog, kOther), this->kNormal);
    enabler->EnableWindow(1);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kNormal);
    dialog.GetDlgTextEnabler(999)->EnableWindow(0);
}

TYPED_TEST(Themed, ColoursFollowTheSystem) {
    Open<TypeParam> dialog;
    dialog.EnableText(kText, 0);
    this->m_dialogs.colours[brindle::kColourButtonFace] = 0x202020;
    this->m_dialogs.colours[brindle::kColourWindowText] = 0xFFFFFF;
    EXPECT_EQ(this->Drawn(dialog, kText), 0x909090u);
}

TYPED_TEST(Themed, HandlesThatComeAgainAreNotGrey) {
    this->m_dialogs.sameHandles = true;
    Open<TypeParam> dialog;
    const HWND before = dialog.GetDlgItem(kText)->GetSafeHwnd();
    dialog.EnableText(kText, 0);
    dialog.DestroyWindow();
    dialog.Create(kTemplate);
    ASSERT_EQ(dialog.GetDlgItem(kText)->GetSafeHwnd(), before);
    EXPECT_EQ(this->Drawn(dialog, kText), this->kNormal);
}

TYPED_TEST(Themed, ClassesAreKnown) {
    Open<TypeParam> dialog;
    EXPECT_EQ(dialog.GetRuntimeClass(), TypeParam::GetThisClass());
    EXPECT_EQ(std::string(dialog.GetRuntimeClass()->m_lpszClassName).substr(0, 7), "CThemed");
    EXPECT_TRUE(dialog.IsKindOf(RUNTIME_CLASS(CDialog)));
}

TEST(ThemedPropertyPage, HasADefaultConstructor) {
    CThemedPropertyPage page;
    page.EnableText(kText, 0);
    EXPECT_EQ(page.GetSafeHwnd(), nullptr);
}

}  // namespace
