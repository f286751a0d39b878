// SvirtAlarmTrigData: one result of a results list as the virtual alarm triggers a host sets up for it.
#pragma once

#include <cstdint>

#include "brindle/framework/string_a.h"

// The meaning of code, mode and value belongs to the host's triggers. SysCreate::GetNextVirtualAlarmTrigger fills
// the block of the result's type and leaves the others as they are.
struct SvirtAlarmTrigData {
    std::int32_t stateCode = 0;
    std::int32_t stateMode = 0;
    std::int32_t stateValue = 0;
    CStringA stateField;
    std::int32_t captionCode = 0;
    std::int32_t captionMode = 0;
    std::int32_t captionValue = 0;
    CStringA captionField;
    std::int32_t maskCode = 0;
    std::int32_t maskMode = 0;
    std::int32_t maskValue = 0;
    CStringA maskField;
    CStringA unit;
    CStringA header;
    bool stateUsed = false;  // these three are the host's; every call clears them
    bool captionUsed = false;
    bool maskUsed = false;
    std::int32_t type = 0;
};
