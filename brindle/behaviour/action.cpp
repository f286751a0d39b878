// The defaults of actions. Tests: action_test.cpp.
#include "brindle/behaviour/action.h"

#include "brindle/behaviour/repeat_index.h"

CCommandAction::~CCommandAction() {
    brindle::ForgetRepeats(this);
}

POSITION CCommandAction::GetFirstChildPosition() const {
    return nullptr;
}
const CCommandTreeItem* CCommandAction::GetNextChild(POSITION&) const {
    return nullptr;
}
int CCommandAction::GetChildCount() const {
    return 0;
}
bool CCommandAction::IsVisible() const {
    return true;
}
void CCommandAction::SetTemplate(bool) {}
bool CCommandAction::IsTemplate() {
    return false;
}

bool CCommandAction::CanUnLock(const CCommandEvent*) const {
    return false;
}
bool CCommandAction::IsRepeat() const {
    return false;
}
int CCommandAction::GetRepeatTime() const {
    return 0;
}
bool CCommandAction::IsSysCreated() const {
    return false;
}
CCommandAction* CCommandAction::Replicate() {
    return nullptr;
}
bool CCommandAction::SupportsHostType(CCommandTrigger::eHostType) const {
    return true;
}
