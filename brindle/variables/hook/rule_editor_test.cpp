#include "brindle/variables/hook/rule_editor.h"

#include <gtest/gtest.h>

#include "brindle/address/address_ov.h"

namespace {

const CAddressOv* g_seenAddress = nullptr;

bool Accept(const CStringA& rule, const CAddressOv* address, CStringA& result) {
    g_seenAddress = address;
    result = rule + "!";
    return true;
}
bool Cancel(const CStringA&, const CAddressOv*, CStringA&) {
    return false;
}

TEST(RuleEditor, IsAskedWhenRegistered) {
    CStringA result = "before";
    EXPECT_FALSE(ShowRuleEditor("a > 1", nullptr, result)) << "none registered";
    EXPECT_EQ(result, "before");

    const CAddressOv address(1u, 2u, 3u);
    RegisterRuleEditorFunct(&Accept);
    EXPECT_TRUE(ShowRuleEditor("a > 1", &address, result));
    EXPECT_EQ(result, "a > 1!");
    EXPECT_EQ(g_seenAddress, &address);
    EXPECT_TRUE(ShowRuleEditor("", nullptr, result));
    EXPECT_EQ(g_seenAddress, nullptr);

    RegisterRuleEditorFunct(&Cancel);
    EXPECT_FALSE(ShowRuleEditor("b", nullptr, result));
    EXPECT_EQ(result, "!");

    RegisterRuleEditorFunct(nullptr);
    EXPECT_FALSE(ShowRuleEditor("b", nullptr, result));
    EXPECT_EQ(result, "!");
}

}  // namespace
