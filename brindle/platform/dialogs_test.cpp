// The contract of dialogs over the fake ones, and the services of a program without a desktop.
#include "testing/dialogs_contract.h"

#include "brindle/platform/fake/dialogs_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

class FakeRig final : public testing::DialogsRig {
  public:
    FakeRig() {
        using namespace testing;
        m_dialogs.templates[kRigDialog] = {"Title",
                                           {{kRigText, kKindStatic, "Text"},
                                            {kRigEdit, kKindEdit, "edit"},
                                            {kRigCheck, kKindButton, "Check"},
                                            {kRigButton, kKindButton, "Press"},
                                            {kControlOk, kKindButton, "OK"},
                                            {kControlCancel, kKindButton, "Cancel"}}};
        m_dialogs.templates[kRigPage] = {"Page", {{kRigEdit, kKindEdit, "edit"}}};
        m_dialogs.captions[kRigCaption] = "Captioned";
    }
    Dialogs& Service() override { return m_dialogs; }
    void Then(std::function<void()> step) override { m_dialogs.user.push_back(std::move(step)); }
    void Click(HWND control) override { m_dialogs.Click(control); }
    void Type(HWND control, std::string_view text) override { m_dialogs.Type(control, text); }
    void Close(HWND window) override { m_dialogs.Close(window); }
    void TurnTo(std::size_t page) override { m_dialogs.TurnTo(page); }
    void PressInSheet(unsigned button) override { m_dialogs.PressInSheet(button); }
    std::size_t FrontPage() override { return m_dialogs.sheet.front; }
    std::uint32_t DrawnColour(HWND control) override { return m_dialogs.DrawnColour(control); }

  private:
    FakeDialogs m_dialogs;
};

std::unique_ptr<testing::DialogsRig> MakeFakeRig() {
    return std::make_unique<FakeRig>();
}

TEST(NoDialogs, MakesNoWindowAndKnowsTheUsualColours) {
    testing::RecordedEvents events;
    testing::RecordedSheet sheet;
    Dialogs& none = CurrentDialogs();
    EXPECT_EQ(none.Create(testing::kRigDialog, nullptr, events), nullptr);
    EXPECT_EQ(none.RunModal(nullptr), kDialogFailed);
    EXPECT_EQ(none.RunSheet(nullptr, "Sheet", {{nullptr, ""}}, 0, sheet), kDialogFailed);
    EXPECT_EQ(none.SystemColour(kColourButtonFace), 0xF0F0F0u);
    EXPECT_EQ(none.SystemColour(kColourWindowText), 0u);
    EXPECT_EQ(none.SystemColour(kColourButtonShadow), 0xA0A0A0u);
    EXPECT_EQ(none.SystemColour(kColourButtonHighlight), 0xFFFFFFu);
    EXPECT_EQ(none.SystemColour(kColourDarkShadow), 0x696969u);
    EXPECT_EQ(none.Caption(1), "");
    EXPECT_EQ(none.Control(nullptr, 1), nullptr);
    EXPECT_EQ(none.Text(nullptr), "");
    EXPECT_FALSE(none.IsEnabled(nullptr));
    EXPECT_FALSE(none.IsChecked(nullptr));
    EXPECT_EQ(none.ControlBrush(kColourButtonFace), nullptr);
    FakeDialogs fake;
    {
        const ScopedService<Dialogs> installed(&SetDialogs, fake);
        EXPECT_EQ(&CurrentDialogs(), &fake);
    }
    EXPECT_EQ(&CurrentDialogs(), &none);
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Fake, DialogsContract, ::testing::Values(&MakeFakeRig));
}

}  // namespace brindle
