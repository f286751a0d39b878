// The contract of colour dialogs over the fake one, the slot, and the screen's pixels without a screen.
#include "testing/colour_box_contract.h"

#include "brindle/platform/fake/colour_box_fake.h"
#include "brindle/platform/fake/screen_pixels_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

class FakeRig final : public testing::ColourBoxRig {
  public:
    ColourBox& Service() override { return m_box; }
    void WillConfirm(std::uint32_t colour) override { m_box.choice = colour; }
    void WillCancelAfterChoosing(std::uint32_t) override { m_box.choice.reset(); }

  private:
    FakeColourBox m_box;
};

std::unique_ptr<testing::ColourBoxRig> MakeFakeRig() {
    return std::make_unique<FakeRig>();
}

TEST(NoColourBox, NobodyChooses) {
    std::uint32_t colour = 5;
    CustomColours custom{};
    EXPECT_FALSE(CurrentColourBox().ChooseColour(nullptr, colour, custom));
    EXPECT_EQ(colour, 5u);
    FakeColourBox fake;
    const ScopedService<ColourBox> installed(&SetColourBox, fake);
    EXPECT_EQ(&CurrentColourBox(), &fake);
}

TEST(ScreenPixels, TellWhyTheyCannotBeRead) {
    std::uint32_t colour = 5;
    EXPECT_EQ(CurrentScreenPixels().WhyUnavailable(), "There is no screen.");
    EXPECT_FALSE(CurrentScreenPixels().Read({0, 0}, colour));
    EXPECT_EQ(colour, 5u);
    FakeScreenPixels fake;
    fake.pixels[{1, 2}] = 0x123456;
    const ScopedService<ScreenPixels> installed(&SetScreenPixels, fake);
    EXPECT_EQ(CurrentScreenPixels().WhyUnavailable(), "");
    EXPECT_TRUE(CurrentScreenPixels().Read({1, 2}, colour));
    EXPECT_EQ(colour, 0x123456u);
    EXPECT_FALSE(CurrentScreenPixels().Read({2, 2}, colour)) << "elsewhere is no screen";
    fake.why = "Not here.";
    EXPECT_FALSE(CurrentScreenPixels().Read({1, 2}, colour));
    EXPECT_EQ(colour, 0x123456u);
}

}  // namespace

namespace testing {
INSTANTIATE_TEST_SUITE_P(Fake, ColourBoxContract, ::testing::Values(&MakeFakeRig));
}

}  // namespace brindle
