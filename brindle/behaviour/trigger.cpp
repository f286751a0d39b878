// The defaults of triggers. Tests: trigger_test.cpp.
#include "brindle/behaviour/trigger.h"

#include "brindle/behaviour/repeat_index.h"

CCommandTrigger::~CCommandTrigger() {
    brindle::ForgetRepeats(this);
}

POSITION CCommandTrigger::GetFirstChildPosition() const {
    return nullptr;
}
const CCommandTreeItem* CCommandTrigger::GetNextChild(POSITION&) const {
    return nullptr;
}
int CCommandTrigger::GetChildCount() const {
    return 0;
}
bool CCommandTrigger::IsVisible() const {
    return true;
}
bool CCommandTrigger::CanRename() const {
    return true;
}
void CCommandTrigger::Rename(const char* name) {
    m_name = name;
}

bool CCommandTrigger::Retest(const CCommandEvent*) const {
    return false;
}
void CCommandTrigger::Init() {}
CCommandTrigger* CCommandTrigger::Replicate() {
    return nullptr;
}
bool CCommandTrigger::HasConfig(const std::string&) const {
    return false;
}
