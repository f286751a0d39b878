// The desktop of a program without one, the contract over the fake one, and the slot.
#include "brindle/platform/desktop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/platform/backend.h"
#include "brindle/platform/fake/desktop_fake.h"
#include "brindle/platform/service.h"
#include "testing/desktop_contract.h"

namespace brindle {
namespace {

TEST(ConsoleDesktop, MessagesAreLinesOnTheStandardError) {
    struct Row {
        const char* label;
        MessageIcon icon;
        const char* text;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"warning", MessageIcon::kWarning, "a", "brindle: warning: a\n"},
        {"error", MessageIcon::kError, "a", "brindle: error: a\n"},
        {"line breaks are blanks", MessageIcon::kError, "a\nb\r\nc\rd", "brindle: error: a b c d\n"},
        {"letters of the code page", MessageIcon::kError, "Caf\xE9", "brindle: error: Caf\xC3\xA9\n"},
        {"nothing commands the terminal", MessageIcon::kError, "\x1B[2J\x07", "brindle: error: ?[2J?\n"},
        {"empty", MessageIcon::kWarning, "", "brindle: warning: \n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        ::testing::internal::CaptureStderr();
        BackendDesktop().ShowMessage(nullptr, row.icon, row.text);
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), row.expected);
    }
}

TEST(ConsoleDesktop, NobodyChooses) {
    std::string file = "before";
    EXPECT_FALSE(BackendDesktop().ChooseFile({}, file));
    EXPECT_EQ(file, "before");
    EXPECT_EQ(BackendDesktop().FileBoxError(), kFileBoxNoDesktop);
    EXPECT_EQ(BackendDesktop().MainWindow(), nullptr);
}

TEST(Desktop, FakeAnswersAsToldAndTheSlotFallsBack) {
    FakeDesktop fake;
    {
        const ScopedService<Desktop> installed(&SetDesktop, fake);
        EXPECT_EQ(&CurrentDesktop(), &fake);
        CurrentDesktop().ShowMessage(nullptr, MessageIcon::kWarning, "text");
        std::string file = "before";
        EXPECT_FALSE(CurrentDesktop().ChooseFile({}, file));
        fake.choice = "C:\\f";
        EXPECT_TRUE(CurrentDesktop().ChooseFile({}, file));
        EXPECT_EQ(file, "C:\\f");
        fake.error = 2;
        EXPECT_FALSE(CurrentDesktop().ChooseFile({}, file));
        EXPECT_EQ(CurrentDesktop().FileBoxError(), 2u);
    }
    ASSERT_EQ(fake.messages.size(), 1u);
    EXPECT_EQ(fake.messages[0].text, "text");
    EXPECT_EQ(&CurrentDesktop(), &BackendDesktop());
}

class FakeRig final : public testing::DesktopRig {
  public:
    Desktop& Service() override { return m_desktop; }
    void WillConfirmMessage() override {}
    std::string WillChoose() override { return *(m_desktop.choice = "C:\\f"); }
    void WillCancel() override { m_desktop.choice.reset(); }

  private:
    FakeDesktop m_desktop;
};

std::unique_ptr<testing::DesktopRig> MakeFakeRig() {
    return std::make_unique<FakeRig>();
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Fake, DesktopContract, ::testing::Values(&MakeFakeRig));
}

}  // namespace brindle
