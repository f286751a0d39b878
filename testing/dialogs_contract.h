// What every dialogs service keeps to. A test program instantiates the suite with a rig: the service, two templates,
// and the ways of a user:
//   INSTANTIATE_TEST_SUITE_P(Fake, DialogsContract, ::testing::Values(&MakeFakeDialogsRig));
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/dialogs.h"

namespace brindle::testing {

// The template "Title" has a text "Text", an edit "edit", a check box "Check", a button "Press", OK and Cancel, by
// these numbers; the template "Page" has an edit only.
constexpr unsigned kRigDialog = 7100, kRigPage = 7101, kRigUnknown = 7199, kRigCaption = 7150;
constexpr unsigned kRigText = 10, kRigEdit = 11, kRigCheck = 12, kRigButton = 13, kRigApply = 3;

class DialogsRig {
  public:
    virtual ~DialogsRig() = default;
    virtual Dialogs& Service() = 0;
    // What the user does, step by step, once the next window runs.
    virtual void Then(std::function<void()> step) = 0;
    virtual void Click(HWND control) = 0;
    virtual void Type(HWND control, std::string_view text) = 0;
    virtual void Close(HWND window) = 0;
    virtual void TurnTo(std::size_t page) = 0;
    virtual void PressInSheet(unsigned button) = 0;  // kControlOk, kControlCancel, kRigApply
    virtual std::size_t FrontPage() = 0;
    virtual std::uint32_t DrawnColour(HWND control) = 0;  // of its text, as the user sees it
};
using MakeDialogsRig = std::unique_ptr<DialogsRig> (*)();

class RecordedEvents final : public DialogEvents {
  public:
    void OnCommand(unsigned control) override {
        commands.push_back(control);
        if (act) act(control);
    }
    void OnControlColour(CDC& context, HWND, unsigned) override {
        if (colour) context.SetTextColor(*colour);
    }
    void OnGone() override { ++gone; }

    std::vector<unsigned> commands;
    std::function<void(unsigned)> act;
    std::optional<unsigned long> colour;
    int gone = 0;
};

class RecordedSheet final : public SheetEvents {
  public:
    bool OnLeave(std::size_t page) override {
        log += "leave" + std::to_string(page) + " ";
        return mayLeave;
    }
    void OnEnter(std::size_t page) override { log += "enter" + std::to_string(page) + " "; }
    bool OnApply() override {
        log += "apply ";
        return mayApply;
    }
    void OnCancelled() override { log += "cancelled "; }

    std::string log;
    bool mayLeave = true, mayApply = true;
};

class DialogsContract : public ::testing::TestWithParam<MakeDialogsRig> {
  protected:
    Dialogs& service() { return m_rig->Service(); }
    DialogsRig& rig() { return *m_rig; }
    HWND Make(HWND owner = nullptr) { return service().Create(kRigDialog, owner, m_events); }
    HWND At(HWND window, unsigned control) { return service().Control(window, control); }

    // Every letter that is typed may be a command of its own.
    static std::vector<unsigned> Different(std::vector<unsigned> commands) {
        commands.erase(std::unique(commands.begin(), commands.end()), commands.end());
        return commands;
    }

    RecordedEvents m_events;

  private:
    std::unique_ptr<DialogsRig> m_rig = GetParam()();
};

TEST_P(DialogsContract, AnUnknownTemplateIsNoWindow) {
    EXPECT_EQ(service().Create(kRigUnknown, nullptr, m_events), nullptr);
    EXPECT_EQ(service().Create(0, nullptr, m_events), nullptr);
}

TEST_P(DialogsContract, ControlsAreKnownByTheirNumbers) {
    const HWND window = Make();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(service().Text(window), "Title");
    EXPECT_EQ(service().Text(At(window, kRigText)), "Text");
    EXPECT_EQ(service().Text(At(window, kRigEdit)), "edit");
    EXPECT_EQ(service().Text(At(window, kRigCheck)), "Check");
    EXPECT_EQ(At(window, kRigText), At(window, kRigText));
    EXPECT_NE(At(window, kControlOk), nullptr);
    EXPECT_NE(At(window, kControlCancel), nullptr);
    EXPECT_EQ(At(window, 999), nullptr);
    service().Destroy(window);
}

TEST_P(DialogsContract, WhatIsSetIsRead) {
    const HWND window = Make();
    for (const unsigned control : {kRigText, kRigEdit, kRigCheck, kRigButton}) {
        SCOPED_TRACE(control);
        for (const char* text : {"", "Caf\xE9 \x80", "a & b <b>", "&Press"}) {
            service().SetText(At(window, control), text);
            EXPECT_EQ(service().Text(At(window, control)), text);
        }
        EXPECT_TRUE(service().IsEnabled(At(window, control)));
        service().SetEnabled(At(window, control), false);
        EXPECT_FALSE(service().IsEnabled(At(window, control)));
    }
    service().SetText(window, "Renamed");
    EXPECT_EQ(service().Text(window), "Renamed");
    EXPECT_FALSE(service().IsChecked(At(window, kRigCheck)));
    service().SetChecked(At(window, kRigCheck), true);
    EXPECT_TRUE(service().IsChecked(At(window, kRigCheck)));
    service().SetChecked(At(window, kRigEdit), true);
    EXPECT_FALSE(service().IsChecked(At(window, kRigEdit))) << "nothing to check";
    service().Invalidate(At(window, kRigText), true);
    service().Destroy(window);
}

TEST_P(DialogsContract, StrangeHandlesAreNoWindows) {
    const HWND window = Make();
    const HWND control = At(window, kRigEdit);
    service().Destroy(window);
    static char other;
    RecordedSheet sheet;
    for (const HWND handle : {HWND{}, window, control, reinterpret_cast<HWND>(&other)}) {
        EXPECT_EQ(service().Control(handle, kRigEdit), nullptr);
        EXPECT_EQ(service().Text(handle), "");
        EXPECT_FALSE(service().IsEnabled(handle));
        EXPECT_FALSE(service().IsChecked(handle));
        EXPECT_EQ(service().RunModal(handle), kDialogFailed);
        EXPECT_EQ(service().RunSheet(nullptr, "Sheet", {{handle, ""}}, 0, sheet), kDialogFailed);
        service().SetText(handle, "text");
        service().SetEnabled(handle, true);
        service().SetChecked(handle, true);
        service().SetPageModified(handle, true);
        service().Invalidate(handle, true);
        service().Show(handle, true);
        service().EndModal(handle, 1);
        service().Destroy(handle);
    }
    EXPECT_EQ(m_events.gone, 0) << "by Destroy";
}

TEST_P(DialogsContract, ARunTellsWhatTheUserDoes) {
    const HWND window = Make();
    rig().Then([&] { rig().Click(At(window, kRigButton)); });
    rig().Then([&] { rig().Type(At(window, kRigEdit), "typed"); });
    rig().Then([&] { service().EndModal(window, 42); });
    EXPECT_EQ(service().RunModal(window), 42);
    EXPECT_EQ(Different(m_events.commands), (std::vector<unsigned>{kRigButton, kRigEdit}));
    EXPECT_EQ(service().Text(At(window, kRigEdit)), "typed");
    service().Destroy(window);
}

TEST_P(DialogsContract, OkCancelAndClosingAreCommands) {
    const HWND window = Make();
    m_events.act = [&](unsigned control) {
        if (m_events.commands.size() == 3) service().EndModal(window, static_cast<int>(control));
    };
    rig().Then([&] { rig().Click(At(window, kControlOk)); });
    rig().Then([&] { rig().Click(At(window, kControlCancel)); });
    rig().Then([&] { rig().Close(window); });
    EXPECT_EQ(service().RunModal(window), static_cast<int>(kControlCancel));
    EXPECT_EQ(m_events.commands, (std::vector<unsigned>{kControlOk, kControlCancel, kControlCancel}))
        << "none of them ends the run by itself";
    service().Destroy(window);
}

TEST_P(DialogsContract, ARunMayEndBeforeItBeginsAndBeginAgain) {
    const HWND window = Make();
    service().EndModal(window, 5);
    EXPECT_EQ(service().RunModal(window), 5);
    rig().Then([&] {
        EXPECT_EQ(service().RunModal(window), kDialogFailed) << "it runs already";
        service().EndModal(window, 6);
    });
    EXPECT_EQ(service().RunModal(window), 6);
    service().Destroy(window);
}

TEST_P(DialogsContract, DestroyingWithinACommandEndsTheRun) {
    const HWND window = Make();
    m_events.act = [&](unsigned) { service().Destroy(window); };
    rig().Then([&] { rig().Click(At(window, kRigButton)); });
    EXPECT_EQ(service().RunModal(window), static_cast<int>(kControlCancel));
    EXPECT_EQ(m_events.gone, 0);
}

TEST_P(DialogsContract, AWindowGoesWithItsOwner) {
    RecordedEvents ownerEvents;
    const HWND owner = service().Create(kRigDialog, nullptr, ownerEvents);
    const HWND window = Make(owner);
    service().Destroy(owner);
    EXPECT_EQ(m_events.gone, 1);
    EXPECT_EQ(ownerEvents.gone, 0);
    EXPECT_EQ(service().Text(window), "");
}

TEST_P(DialogsContract, RunsMayBeNested) {
    RecordedEvents ownerEvents;
    const HWND owner = service().Create(kRigDialog, nullptr, ownerEvents);
    rig().Then([&] {
        const HWND window = Make(owner);
        rig().Then([&, window] { service().EndModal(window, 8); });
        EXPECT_EQ(service().RunModal(window), 8);
        service().Destroy(window);
        service().EndModal(owner, 9);
    });
    EXPECT_EQ(service().RunModal(owner), 9);
    service().Destroy(owner);
}

TEST_P(DialogsContract, TextsAreDrawnAsTheReceiverColoursThem) {
    const HWND window = Make();
    const HWND text = At(window, kRigText);
    const std::uint32_t usual = rig().DrawnColour(text);
    EXPECT_EQ(usual, service().SystemColour(kColourWindowText));
    m_events.colour = 0x4080C0;
    service().Invalidate(text, true);
    EXPECT_EQ(rig().DrawnColour(text), 0x4080C0u);
    m_events.colour.reset();
    service().Invalidate(text, true);
    EXPECT_EQ(rig().DrawnColour(text), usual);
    service().Destroy(window);
}

TEST_P(DialogsContract, SystemColoursHave24Bits) {
    for (const int index : {kColourWindowText, kColourButtonFace, kColourButtonShadow, kColourButtonHighlight,
                            kColourDarkShadow})
        EXPECT_LE(service().SystemColour(index), 0xFFFFFFu);
    EXPECT_NE(service().SystemColour(kColourButtonFace), service().SystemColour(kColourWindowText));
    EXPECT_EQ(service().SystemColour(-1), 0u);
}

TEST_P(DialogsContract, CaptionsAreRegisteredTexts) {
    EXPECT_EQ(service().Caption(kRigCaption), "Captioned");
    EXPECT_EQ(service().Caption(0), "");
}

TEST_P(DialogsContract, SheetsTurnApplyAndEnd) {
    struct Row {
        const char* label;
        std::vector<std::function<void(DialogsRig&, RecordedSheet&)>> steps;
        int result;
        const char* log;
    };
    const auto press = [](unsigned button) {
        return [button](DialogsRig& user, RecordedSheet&) { user.PressInSheet(button); };
    };
    const auto turn = [](std::size_t page) {
        return [page](DialogsRig& user, RecordedSheet&) { user.TurnTo(page); };
    };
    const auto leave = [](bool may) { return [may](DialogsRig&, RecordedSheet& s) { s.mayLeave = may; }; };
    const auto apply = [](bool may) { return [may](DialogsRig&, RecordedSheet& s) { s.mayApply = may; }; };
    const auto front = [](std::size_t page) {
        return [page](DialogsRig& user, RecordedSheet&) { EXPECT_EQ(user.FrontPage(), page); };
    };
    const std::vector<Row> rows = {
        {"OK", {front(0), press(kControlOk)}, 1, "enter0 leave0 apply "},
        {"cancel", {press(kControlCancel)}, 2, "enter0 cancelled "},
        {"turn", {turn(1), front(1), press(kControlOk)}, 1, "enter0 leave0 enter1 leave1 apply "},
        {"a page stays",
         {leave(false), turn(1), front(0), press(kControlOk), press(kControlCancel)},
         2,
         "enter0 leave0 leave0 cancelled "},
        {"applying fails",
         {apply(false), press(kControlOk), apply(true), press(kControlOk)},
         1,
         "enter0 leave0 apply leave0 apply "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        RecordedEvents events[2];
        const HWND pages[2] = {service().Create(kRigPage, nullptr, events[0]),
                               service().Create(kRigPage, nullptr, events[1])};
        RecordedSheet sheet;
        for (const auto& step : row.steps) rig().Then([&, step] { step(rig(), sheet); });
        EXPECT_EQ(service().RunSheet(nullptr, "Sheet", {{pages[0], "One"}, {pages[1], ""}}, 0, sheet),
                  row.result);
        EXPECT_EQ(sheet.log, row.log);
        EXPECT_EQ(service().Text(At(pages[1], kRigEdit)), "edit") << "the pages are still windows";
        for (const HWND page : pages) service().Destroy(page);
        EXPECT_EQ(events[0].gone + events[1].gone, 0);
    }
}

TEST_P(DialogsContract, ASheetOffersApplyForWhatWasChanged) {
    RecordedEvents events;
    const HWND page = service().Create(kRigPage, nullptr, events);
    events.act = [&](unsigned) { service().SetPageModified(page, true); };
    RecordedSheet sheet;
    rig().Then([&] { rig().Type(At(page, kRigEdit), "typed"); });
    rig().Then([&] { rig().PressInSheet(kRigApply); });
    rig().Then([&] { rig().PressInSheet(kControlCancel); });
    EXPECT_EQ(service().RunSheet(nullptr, "Sheet", {{page, ""}}, 9, sheet), 2);
    EXPECT_EQ(sheet.log, "enter0 leave0 apply cancelled ");
    EXPECT_EQ(Different(events.commands), std::vector<unsigned>{kRigEdit});
    service().Destroy(page);
}

TEST_P(DialogsContract, ASheetNeedsPages) {
    RecordedSheet sheet;
    EXPECT_EQ(service().RunSheet(nullptr, "Sheet", {}, 0, sheet), kDialogFailed);
    EXPECT_EQ(sheet.log, "");
}

}  // namespace brindle::testing
