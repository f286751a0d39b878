#include "brindle/behaviour/time_based_trigger.h"

CTimeBasedTrigger::~CTimeBasedTrigger() = default;

CStringA CTimeBasedTrigger::GetText(int kind) {
    return kind == 1 ? CStringA(kTypeText) : GetName();
}
