// The hidden window with timers. Tests: timer_test.cpp.
#include "brindle/util/timer.h"

namespace {

CObject* CreateTimerObject() {
    return new CTimer;
}

}  // namespace

constinit const CRuntimeClass CTimer::classCTimer = {"CTimer",           sizeof(CTimer),   0xFFFF,
                                                     &CreateTimerObject, &CWnd::classCWnd, nullptr};

CTimer::CTimer() = default;
CTimer::~CTimer() = default;

const CRuntimeClass* CTimer::GetRuntimeClass() const {
    return &classCTimer;
}
const CRuntimeClass* CTimer::GetThisClass() {
    return &classCTimer;
}

int CTimer::Create() {
    return CreateMessageWindow() ? 1 : 0;
}

void CTimer::CreateTimer(unsigned int id, unsigned int elapse) {
    if (!GetSafeHwnd() && !Create()) return;
    SetTimer(id, elapse);
}

void CTimer::OnTimer(std::uint64_t) {}

const AFX_MSGMAP* CTimer::GetMessageMap() const {
    return GetThisMessageMap();
}

const AFX_MSGMAP* CTimer::GetThisMessageMap() {
    static constexpr AFX_MSGMAP_ENTRY kEntries[] = {
        {kTimerMessage, static_cast<void (CWnd::*)(std::uint64_t)>(&CTimer::OnTimer)}, {0, nullptr}};
    static constexpr AFX_MSGMAP kMap = {&CWnd::GetThisMessageMap, kEntries};
    return &kMap;
}
