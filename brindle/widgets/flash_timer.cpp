// The flash timer and its hidden window, which is there while somebody listens. Tests: flash_timer_test.cpp.
#include "brindle/widgets/flash_timer.h"

#include <utility>

#include "brindle/framework/ui/wnd.h"
#include "brindle/widgets/walked_list.h"

namespace {

constexpr std::uint64_t kFlashTimer = 0x1602;
constexpr unsigned int kPeriod = 500;  // milliseconds

using CallBacks = brindle::WalkedList<CFlashCallBack*>;

class CFlashWnd final : public CWnd {
  public:
    // With its timer running; false when there is none to be had.
    bool Create() { return CreateMessageWindow() && SetTimer(kFlashTimer, kPeriod) != 0; }

  protected:
    const AFX_MSGMAP* GetMessageMap() const override;

  private:
    void OnTimer(std::uint64_t id);
};

struct FlashState {
    CallBacks* callBacks = nullptr;  // null: there are none
    CFlashWnd* window = nullptr;
    int state = 0;
};
constinit FlashState g_flash;

void DropCallBacksAtRest() {
    if (g_flash.callBacks && g_flash.callBacks->IsAtRest()) delete std::exchange(g_flash.callBacks, nullptr);
}

const AFX_MSGMAP* CFlashWnd::GetMessageMap() const {
    static constexpr AFX_MSGMAP_ENTRY kEntries[] = {
        {kTimerMessage, static_cast<void (CWnd::*)(std::uint64_t)>(&CFlashWnd::OnTimer)}, {0, nullptr}};
    static constexpr AFX_MSGMAP kMap = {&CWnd::GetThisMessageMap, kEntries};
    return &kMap;
}

// This window may be destroyed by a call-back.
void CFlashWnd::OnTimer(std::uint64_t id) {
    if (id != kFlashTimer || !g_flash.callBacks) return;
    const int state = g_flash.state = 1 - g_flash.state;
    g_flash.callBacks->Walk([&](CFlashCallBack* callBack, const bool&) { callBack->OnFlash(state); });
    DropCallBacksAtRest();
}

bool IsWindowThere() {
    if (g_flash.window) return true;
    CFlashWnd* window = new CFlashWnd;
    if (window->Create()) {
        g_flash.window = window;
        return true;
    }
    delete window;
    return false;
}

}  // namespace

CFlashCallBack::~CFlashCallBack() {
    EndFlashTimer(this);
}

void CFlashCallBack::OnFlash(int) {}

int StartFlashTimer(CFlashCallBack* callBack) {
    if (!callBack || !IsWindowThere()) return 0;
    if (!g_flash.callBacks) g_flash.callBacks = new CallBacks;
    if (!g_flash.callBacks->Find([&](const CFlashCallBack* each) { return each == callBack; }))
        g_flash.callBacks->Add(callBack);
    return 1;
}

int EndFlashTimer(CFlashCallBack* callBack) {
    if (!g_flash.callBacks) return 0;
    const bool found =
        g_flash.callBacks->Remove([&](const CFlashCallBack* each) { return each == callBack; });
    if (g_flash.callBacks->IsEmpty()) delete std::exchange(g_flash.window, nullptr);
    DropCallBacksAtRest();
    return found ? 1 : 0;
}
