// The order of fields and the one virtual operation, against the compiler's own layout.
#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>
#include <vector>

#include "brindle/syscreate/sys_create.h"

struct SysCreateLayout {
    static std::vector<const void*> Fields(const SysCreate& create) {
        return {&create, &create.m_results, &create.m_masks, &create.m_resultInfo};
    }
};

namespace {

void ExpectRising(const std::vector<const void*>& fields) {
    for (std::size_t i = 1; i < fields.size(); ++i) EXPECT_LT(fields[i - 1], fields[i]) << i;
}

TEST(SysCreateLayoutTest, FieldsStandInTheirOrder) {
    const SysCreate create;
    ExpectRising(SysCreateLayout::Fields(create));
    static_assert(std::has_virtual_destructor_v<SysCreate>);
}

TEST(SysCreateLayoutTest, RecordFieldsStandInTheirOrder) {
    const SvirtAlarmTrigData r;
    EXPECT_EQ(static_cast<const void*>(&r), &r.stateCode);
    ExpectRising({&r.stateCode, &r.stateMode, &r.stateValue, &r.stateField, &r.captionCode, &r.captionMode,
                  &r.captionValue, &r.captionField, &r.maskCode, &r.maskMode, &r.maskValue, &r.maskField,
                  &r.unit, &r.header, &r.stateUsed, &r.captionUsed, &r.maskUsed, &r.type});
    static_assert(sizeof r.stateCode == 4 && sizeof r.type == 4 && sizeof r.stateUsed == 1);
}

}  // namespace
