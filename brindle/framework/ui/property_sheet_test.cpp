// Property sheets and pages over the fake windows.
#include "brindle/framework/ui/property_sheet.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/framework/ui/ole_property_page.h"
#include "brindle/platform/fake/dialogs_fake.h"
#include "brindle/platform/service.h"

namespace {

using brindle::FakeDialogs;
using Log = std::vector<std::string>;

constexpr unsigned kFirst = 100, kSecond = 101, kName = 11, kCaption = 500;

template <class Base>
class PageProbe : public Base {
  public:
    PageProbe(Log& log, std::string name, unsigned templateId, unsigned caption)
        : Base(templateId, caption), m_log(log), m_name(std::move(name)) {}
    bool mayLeave = true, mayApply = true;
    CStringA taken;

  protected:
    bool OnSetActive() override { return Note("active"), Base::OnSetActive(); }
    bool OnKillActive() override { return Note("leave"), mayLeave && Base::OnKillActive(); }
    bool OnApply() override { return Note("apply"), mayApply && Base::OnApply(); }
    void OnOK() override {
        taken = this->GetDlgItemTextA(kName);
        Base::OnOK();
    }
    void OnCancel() override {
        Note("cancel");
        Base::OnCancel();
    }
    bool OnCommand(unsigned int control) override {
        this->SetModified();
        return Base::OnCommand(control);
    }

  private:
    void Note(const char* what) { m_log.push_back(m_name + " " + what); }
    Log& m_log;
    std::string m_name;
};

class PropertySheet : public ::testing::Test {
  protected:
    PropertySheet() {
        m_dialogs.templates[kFirst] = {"First", {{kName, brindle::kKindEdit, "1"}}};
        m_dialogs.templates[kSecond] = {"Second", {{kName, brindle::kKindEdit, "2"}}};
        m_dialogs.captions[kCaption] = "Captioned";
        m_sheet.AddPage(&m_first);
        m_sheet.AddPage(&m_second);
        m_sheet.AddPage(nullptr);
    }
    int Run(std::initializer_list<std::function<void()>> user) {
        m_log.clear();
        m_dialogs.user = user;
        return m_sheet.DoModal();
    }
    std::function<void()> Press(unsigned button) {
        return [this, button] { m_dialogs.PressInSheet(button); };
    }

    FakeDialogs m_dialogs;
    brindle::ScopedService<brindle::Dialogs> m_installed{&brindle::SetDialogs, m_dialogs};
    Log m_log;
    PageProbe<CPropertyPage> m_first{m_log, "first", kFirst, kCaption};
    PageProbe<COlePropertyPage> m_second{m_log, "second", kSecond, 0};
    CPropertySheet m_sheet{"Settings"};
};

TEST_F(PropertySheet, OkAppliesEveryPage) {
    const int result = Run({[&] { m_dialogs.Type(m_second.GetDlgItem(kName)->GetSafeHwnd(), "typed"); },
                            Press(brindle::kControlOk)});
    EXPECT_EQ(result, 1);
    EXPECT_EQ(m_dialogs.sheet.caption, "Settings");
    EXPECT_EQ(m_dialogs.sheet.tabs, (Log{"Captioned", "Second"}));
    EXPECT_EQ(m_log, (Log{"first active", "first leave", "first apply", "second apply"}));
    EXPECT_EQ(m_first.taken, "1");
    EXPECT_EQ(m_second.taken, "typed");
    EXPECT_EQ(m_first.GetSafeHwnd(), nullptr);
}

TEST_F(PropertySheet, CancelTakesNothing) {
    EXPECT_EQ(Run({Press(brindle::kControlCancel)}), 2);
    EXPECT_EQ(m_log, (Log{"first active", "first cancel", "second cancel"}));
    EXPECT_EQ(m_first.taken, "");
}

TEST_F(PropertySheet, APageMayStay) {
    m_first.mayLeave = false;
    EXPECT_EQ(
        Run({[&] { m_dialogs.TurnTo(1); }, [&] { EXPECT_EQ(m_dialogs.sheet.front, 0u); },
             Press(brindle::kControlOk), [&] { m_first.mayLeave = true; }, [&] { m_dialogs.TurnTo(1); },
             [&] { EXPECT_EQ(m_dialogs.sheet.front, 1u); }, [&] { m_second.mayApply = false; },
             Press(brindle::kControlOk), [&] { m_second.mayApply = true; }, Press(brindle::kControlOk)}),
        1);
    EXPECT_EQ(m_log, (Log{"first active", "first leave", "first leave", "first leave", "second active",
                          "second leave", "first apply", "second apply", "second leave", "first apply",
                          "second apply"}));
}

TEST_F(PropertySheet, ApplyIsOfferedForWhatWasChanged) {
    const auto change = [&] { m_dialogs.Type(m_first.GetDlgItem(kName)->GetSafeHwnd(), "typed"); };
    Run({change, [&] { EXPECT_TRUE(m_dialogs.sheet.modified.contains(m_first.GetSafeHwnd())); },
         Press(FakeDialogs::kApply),
         [&] {
             EXPECT_TRUE(m_dialogs.sheet.modified.empty());
             EXPECT_EQ(m_first.taken, "typed");
         }});
}

TEST_F(PropertySheet, PagesOfObjectsRememberTheirFlag) {
    EXPECT_FALSE(m_second.IsModified());
    Run({[&] { m_second.SetModifiedFlag(); },
         [&] { EXPECT_TRUE(m_dialogs.sheet.modified.contains(m_second.GetSafeHwnd())); },
         [&] { EXPECT_TRUE(m_second.IsModified()); }, Press(FakeDialogs::kApply),
         [&] { EXPECT_FALSE(m_second.IsModified()); }});
}

TEST_F(PropertySheet, BeginsWithTheFirstPageGiven) {
    CPropertySheet sheet("Settings", nullptr, 1);
    sheet.AddPage(&m_first);
    sheet.AddPage(&m_second);
    m_dialogs.user = {[&] { EXPECT_EQ(m_dialogs.sheet.front, 1u); }};
    EXPECT_EQ(sheet.DoModal(), 2);
}

TEST_F(PropertySheet, CannotRunWithoutPagesOrTheirTemplates) {
    CPropertySheet empty("Settings");
    EXPECT_EQ(empty.DoModal(), -1);
    PageProbe<CPropertyPage> unknown(m_log, "unknown", 999, 0);
    m_sheet.AddPage(&unknown);
    EXPECT_EQ(m_sheet.DoModal(), -1);
    EXPECT_EQ(m_first.GetSafeHwnd(), nullptr) << "none is left behind";
    brindle::SetDialogs(nullptr);
    EXPECT_EQ(m_sheet.DoModal(), -1);
    brindle::SetDialogs(&m_dialogs);
}

TEST(PropertyPageClasses, AreKnownByName) {
    CPropertyPage page;
    EXPECT_TRUE(page.IsKindOf(RUNTIME_CLASS(CDialog)));
    EXPECT_EQ(page.DoModal(), -1) << "without a template";
    COlePropertyPage ole(1, 2);
    EXPECT_STREQ(ole.GetRuntimeClass()->m_lpszClassName, "COlePropertyPage");
    EXPECT_EQ(CRuntimeClass::FromName("CPropertySheet"), CPropertySheet::GetThisClass());
    const CPropertySheet sheet("Sheet");
    EXPECT_EQ(sheet.GetRuntimeClass(), CPropertySheet::GetThisClass());
    EXPECT_TRUE(sheet.IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_EQ(COlePropertyPage::GetThisClass()->m_pBaseClass, CPropertyPage::GetThisClass());
}

}  // namespace
