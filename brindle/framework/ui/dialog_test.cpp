// Dialogs over the fake windows, and the handles a CWnd may have.
#include "brindle/framework/ui/dialog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/dialogs_fake.h"
#include "brindle/platform/fake/ui_timer_fake.h"
#include "brindle/platform/service.h"

namespace {

using brindle::FakeDialogs;

constexpr unsigned kTemplate = 100, kText = 10, kName = 11, kCheck = 12, kButton = 13;

class Probe : public CDialog {
  public:
    using CDialog::CDialog;
    std::vector<std::string> log;
    int endInInit = 0;

  protected:
    bool OnInitDialog() override {
        log.push_back("init " + GetDlgItemTextA(kName).str());
        SetDlgItemTextA(kName, "made");
        if (endInInit) EndDialog(endInInit);
        return CDialog::OnInitDialog();
    }
    bool OnCommand(unsigned int control) override {
        log.push_back("command " + std::to_string(control));
        return CDialog::OnCommand(control);
    }
    HBRUSH OnCtlColor(CDC* context, CWnd* control, unsigned int kind) override {
        log.push_back("colour " + std::to_string(kind) + " " + control->GetWindowTextA().str());
        EXPECT_EQ(control->GetSafeHwnd(), GetDlgItem(kText)->GetSafeHwnd());
        EXPECT_EQ(CDialog::OnCtlColor(context, control, kind), brindle::CurrentDialogs().ControlBrush(kind));
        context->SetTextColor(0x123456);
        return nullptr;
    }
    void OnDestroy() override {
        log.push_back("destroy " + GetDlgItemTextA(kName).str());
        CDialog::OnDestroy();
    }
};

class Dialog : public ::testing::Test {
  protected:
    Dialog() {
        m_dialogs.templates[kTemplate] = {"Title",
                                          {{kText, brindle::kKindStatic, "Text"},
                                           {kName, brindle::kKindEdit, "name"},
                                           {kCheck, brindle::kKindButton, "Check"},
                                           {kButton, brindle::kKindButton, "Press"},
                                           {1, brindle::kKindButton, "OK"},
                                           {2, brindle::kKindButton, "Cancel"}}};
    }
    HWND At(CDialog& dialog, unsigned control) { return dialog.GetDlgItem(control)->GetSafeHwnd(); }

    FakeDialogs m_dialogs;
    brindle::ScopedService<brindle::Dialogs> m_installed{&brindle::SetDialogs, m_dialogs};
};

TEST_F(Dialog, RunsFromInitToItsResult) {
    Probe dialog(kTemplate);
    m_dialogs.user = {[&] { EXPECT_TRUE(m_dialogs.IsShown(dialog.GetSafeHwnd())); },
                      [&] { m_dialogs.Type(At(dialog, kName), "typed"); },
                      [&] { m_dialogs.Click(At(dialog, kButton)); }, [&] { m_dialogs.Click(At(dialog, 1)); }};
    EXPECT_EQ(dialog.DoModal(), 1);
    EXPECT_EQ(dialog.log, (std::vector<std::string>{"init name", "command 11", "command 13", "command 1",
                                                    "destroy typed"}));
    EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
    EXPECT_EQ(dialog.DoModal(), 2) << "may run again; the frame's close button is a cancel";
}

TEST_F(Dialog, ResultsOfARun) {
    struct Row {
        const char* label;
        void (*act)(FakeDialogs&, CDialog&);
        int expected;
    };
    const std::vector<Row> rows = {
        {"OK", [](FakeDialogs& user, CDialog& d) { user.Click(d.GetDlgItem(1)->GetSafeHwnd()); }, 1},
        {"cancel", [](FakeDialogs& user, CDialog& d) { user.Click(d.GetDlgItem(2)->GetSafeHwnd()); }, 2},
        {"closed", [](FakeDialogs& user, CDialog& d) { user.Close(d.GetSafeHwnd()); }, 2},
        {"ended with another result", [](FakeDialogs&, CDialog& d) { d.EndDialog(77); }, 77},
        {"the first end counts", [](FakeDialogs&, CDialog& d) { d.EndDialog(5), d.EndDialog(6); }, 5},
        {"destroyed meanwhile", [](FakeDialogs&, CDialog& d) { d.DestroyWindow(); }, 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Probe dialog(kTemplate);
        m_dialogs.user = {[&] { row.act(m_dialogs, dialog); }};
        EXPECT_EQ(dialog.DoModal(), row.expected);
        EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
    }
}

TEST_F(Dialog, MayEndInItsInit) {
    Probe dialog(kTemplate);
    dialog.endInInit = 9;
    EXPECT_EQ(dialog.DoModal(), 9);
}

TEST_F(Dialog, CannotRunWithoutATemplateADesktopOrTwice) {
    Probe unknown(kTemplate + 1);
    EXPECT_EQ(unknown.DoModal(), -1);
    EXPECT_TRUE(unknown.log.empty());
    Probe dialog(kTemplate);
    EXPECT_TRUE(dialog.Create(kTemplate));
    EXPECT_FALSE(dialog.Create(kTemplate));
    EXPECT_EQ(dialog.DoModal(), -1);
    brindle::SetDialogs(nullptr);
    Probe none(kTemplate);
    EXPECT_EQ(none.DoModal(), -1);
    EXPECT_FALSE(none.Create(kTemplate));
    EXPECT_EQ(none.GetDlgItem(kName), nullptr);
    brindle::SetDialogs(&m_dialogs);
}

TEST_F(Dialog, ControlsAreThereWhileTheWindowIs) {
    Probe dialog(kTemplate);
    EXPECT_EQ(dialog.GetDlgItem(kName), nullptr);
    EXPECT_EQ(dialog.GetDlgItemTextA(kName), "");
    dialog.SetDlgItemTextA(kName, "lost");
    dialog.CheckDlgButton(kCheck, 1);
    dialog.EndDialog(1);
    ASSERT_TRUE(dialog.Create(kTemplate));
    EXPECT_EQ(dialog.GetDlgItemTextA(kName), "made");
    EXPECT_EQ(dialog.GetDlgItem(999), nullptr);
    EXPECT_EQ(dialog.GetDlgItem(kName), dialog.GetDlgItem(kName));
    dialog.CheckDlgButton(kCheck, 1);
    EXPECT_EQ(dialog.IsDlgButtonChecked(kCheck), 1);
    EXPECT_EQ(dialog.IsDlgButtonChecked(kName), 0);
    dialog.GetDlgItem(kName)->EnableWindow(false);
    EXPECT_FALSE(dialog.GetDlgItem(kName)->IsWindowEnabled());
    EXPECT_EQ(dialog.GetWindowTextA(), "Title");
    EXPECT_FALSE(m_dialogs.IsShown(dialog.GetSafeHwnd()));
    dialog.ShowWindow();
    EXPECT_TRUE(m_dialogs.IsShown(dialog.GetSafeHwnd()));
    EXPECT_TRUE(dialog.DestroyWindow());
    EXPECT_FALSE(dialog.DestroyWindow());
    EXPECT_EQ(dialog.GetDlgItem(kName), nullptr);
}

TEST_F(Dialog, ColoursAreAskedForWithTheControl) {
    Probe dialog(kTemplate);
    ASSERT_TRUE(dialog.Create(kTemplate));
    dialog.log.clear();
    EXPECT_EQ(m_dialogs.DrawnColour(At(dialog, kText)), 0x123456u);
    EXPECT_EQ(dialog.log, std::vector<std::string>{"colour 6 Text"});
}

TEST_F(Dialog, GoesWithItsOwner) {
    Probe owner(kTemplate), dialog(kTemplate);
    ASSERT_TRUE(owner.Create(kTemplate));
    ASSERT_TRUE(dialog.Create(kTemplate, &owner));
    owner.DestroyWindow();
    EXPECT_EQ(dialog.GetSafeHwnd(), nullptr);
    EXPECT_EQ(dialog.log.back(), "destroy ") << "the controls are gone already";
    EXPECT_FALSE(dialog.DestroyWindow());
}

TEST_F(Dialog, RunsInFrontOfItsOwner) {
    Probe owner(kTemplate);
    ASSERT_TRUE(owner.Create(kTemplate));
    Probe dialog(kTemplate, &owner);
    m_dialogs.user = {[&] { EXPECT_FALSE(owner.IsWindowEnabled()); }};
    EXPECT_EQ(dialog.DoModal(), 2);
    EXPECT_TRUE(owner.IsWindowEnabled());
}

TEST_F(Dialog, HasTimersOfItsOwn) {
    class Ticking : public Probe {
      public:
        using Probe::Probe;
        void OnTick(std::uint64_t id) { log.push_back("tick " + std::to_string(id)); }

      protected:
        const AFX_MSGMAP* GetMessageMap() const override {
            static constexpr AFX_MSGMAP_ENTRY kEntries[] = {
                {kTimerMessage, static_cast<void (CWnd::*)(std::uint64_t)>(&Ticking::OnTick)}, {0, nullptr}};
            static constexpr AFX_MSGMAP kMap = {nullptr, kEntries};
            return &kMap;
        }
    };
    brindle::FakeUiTimer timer;
    const brindle::ScopedService<brindle::UiTimer> installed(&brindle::SetUiTimer, timer);
    Ticking dialog(kTemplate);
    EXPECT_EQ(dialog.SetTimer(3, 10), 0u) << "there is no window";
    ASSERT_TRUE(dialog.Create(kTemplate));
    EXPECT_TRUE(dialog.KillTimer(3)) << "none runs";
    EXPECT_EQ(dialog.SetTimer(3, 10), 3u);
    timer.Advance(10);
    EXPECT_EQ(dialog.log.back(), "tick 3");
    dialog.DestroyWindow();
    dialog.log.clear();
    timer.Advance(100);
    EXPECT_TRUE(dialog.log.empty());
}

TEST_F(Dialog, AHandleIsTakenOnce) {
    Probe dialog(kTemplate);
    ASSERT_TRUE(dialog.Create(kTemplate));
    CWnd window;
    EXPECT_FALSE(window.Attach(nullptr));
    EXPECT_TRUE(window.Attach(At(dialog, kName)));
    EXPECT_FALSE(window.Attach(At(dialog, kText)));
    window.SetWindowTextA("through it");
    EXPECT_EQ(dialog.GetDlgItemTextA(kName), "through it");
    EXPECT_TRUE(window.DestroyWindow());
    EXPECT_EQ(dialog.GetDlgItemTextA(kName), "through it") << "only let go";
}

TEST(DialogClass, IsKnownByName) {
    CDialog dialog;
    EXPECT_STREQ(dialog.GetRuntimeClass()->m_lpszClassName, "CDialog");
    EXPECT_TRUE(dialog.IsKindOf(RUNTIME_CLASS(CWnd)));
    EXPECT_EQ(CDialog::GetThisClass(), RUNTIME_CLASS(CDialog));
}

}  // namespace
