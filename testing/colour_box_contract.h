// What every colour dialog keeps to. A test program instantiates the suite with a rig: the service and the ways of a
// user.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "brindle/platform/colour_box.h"

namespace brindle::testing {

class ColourBoxRig {
  public:
    virtual ~ColourBoxRig() = default;
    virtual ColourBox& Service() = 0;
    // What the user does in the next dialog.
    virtual void WillConfirm(std::uint32_t colour) = 0;
    virtual void WillCancelAfterChoosing(std::uint32_t colour) = 0;
};
using MakeColourBoxRig = std::unique_ptr<ColourBoxRig> (*)();

class ColourBoxContract : public ::testing::TestWithParam<MakeColourBoxRig> {
  protected:
    ColourBoxRig& rig() { return *m_rig; }
    ColourBox& service() { return m_rig->Service(); }
    static CustomColours Sixteen() {
        CustomColours custom;
        for (std::size_t i = 0; i < custom.size(); ++i) custom[i] = static_cast<std::uint32_t>(0x102030 + i);
        return custom;
    }

  private:
    std::unique_ptr<ColourBoxRig> m_rig = GetParam()();
};

TEST_P(ColourBoxContract, AConfirmedColourIsAnswered) {
    for (const std::uint32_t chosen : {0x000000u, 0x0000FFu, 0x00FF00u, 0xFF0000u, 0x563412u, 0xFFFFFFu}) {
        SCOPED_TRACE(chosen);
        std::uint32_t colour = 0x808080;
        CustomColours custom = Sixteen();
        rig().WillConfirm(chosen);
        EXPECT_TRUE(service().ChooseColour(nullptr, colour, custom));
        EXPECT_EQ(colour, chosen);
        EXPECT_EQ(custom, Sixteen());
    }
}

TEST_P(ColourBoxContract, CancellingChangesNothing) {
    std::uint32_t colour = 0x123456;
    CustomColours custom = Sixteen();
    rig().WillCancelAfterChoosing(0x654321);
    EXPECT_FALSE(service().ChooseColour(nullptr, colour, custom));
    EXPECT_EQ(colour, 0x123456u);
    EXPECT_EQ(custom, Sixteen());
}

TEST_P(ColourBoxContract, CustomColoursAreCutTo24Bits) {
    std::uint32_t colour = 0x123456;
    CustomColours custom = Sixteen();
    custom[2] = 0xFF112233;
    rig().WillConfirm(0x123456);
    EXPECT_TRUE(service().ChooseColour(nullptr, colour, custom));
    EXPECT_EQ(custom[2], 0x112233u);
}

}  // namespace brindle::testing
