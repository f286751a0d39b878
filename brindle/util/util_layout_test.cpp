// The order of fields and of virtual operations: both are part of the binary interface.
#include <gtest/gtest.h>

#include <cstddef>

#include "brindle/util/my_char_replacer.h"
#include "testing/layout.h"

namespace Orvane {

struct UtilLayout {
    static void CheckCharReplacer() {
        const MyCharReplacer replacer("", 'a', true, 'b', "");
        const auto offset = [&](const void* field) {
            return static_cast<const char*>(field) - reinterpret_cast<const char*>(&replacer);
        };
        const std::ptrdiff_t offsets[] = {
            offset(&replacer.m_chars), offset(&replacer.m_replacement), offset(&replacer.m_stripControls),
            offset(&replacer.m_controlReplacement), offset(&replacer.m_keepControls)};
        for (std::size_t i = 1; i < std::size(offsets); ++i)
            EXPECT_LT(offsets[i - 1], offsets[i]) << "field " << i;
    }
};

namespace {

TEST(UtilLayout, CharReplacerFieldsInOrder) {
    UtilLayout::CheckCharReplacer();
}

TEST(UtilLayout, ReplacersHaveTheirCallFirst) {
    EXPECT_EQ(brindle::testing::SlotOf(&Replacer<char>::operator()), 0u);
    EXPECT_EQ(brindle::testing::SlotOf(&Replacer<int>::operator()), 0u);
    EXPECT_EQ(brindle::testing::SlotOf(&Replacer<CStringA>::operator()), 0u);
}

}  // namespace
}  // namespace Orvane
