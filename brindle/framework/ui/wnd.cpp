// Windows that only receive messages. Tests: brindle/util/timer_test.cpp.
#include "brindle/framework/ui/wnd.h"

#include <utility>

#include "brindle/platform/ui_timer.h"

namespace {

// What the handle of a message-only window points to.
class MessageWindow final : public brindle::UiTimerTarget {
  public:
    explicit MessageWindow(CWnd& window) : m_window(window) {}
    // The window may be destroyed by this.
    void OnTick(std::uint64_t id) override { m_window.SendMessage(CWnd::kTimerMessage, id); }

  private:
    CWnd& m_window;
};

MessageWindow* WindowOf(HWND handle) noexcept {
    return reinterpret_cast<MessageWindow*>(handle);
}

constexpr AFX_MSGMAP_ENTRY kNoEntries[] = {{0, nullptr}};
constexpr AFX_MSGMAP kMessageMap = {nullptr, kNoEntries};

}  // namespace

constinit const CRuntimeClass CWnd::classCWnd = {"CWnd",  sizeof(CWnd),           0xFFFF,
                                                 nullptr, &CObject::classCObject, nullptr};

CWnd::CWnd() = default;

CWnd::~CWnd() {
    CWnd::DestroyWindow();
}

const CRuntimeClass* CWnd::GetRuntimeClass() const {
    return &classCWnd;
}
const CRuntimeClass* CWnd::GetThisClass() {
    return &classCWnd;
}

bool CWnd::CreateMessageWindow() {
    if (!m_hWnd) m_hWnd = reinterpret_cast<HWND>(new MessageWindow(*this));
    return true;
}

bool CWnd::DestroyWindow() {
    MessageWindow* window = WindowOf(std::exchange(m_hWnd, nullptr));
    if (!window) return false;
    brindle::CurrentUiTimer().StopAll(*window);
    delete window;
    return true;
}

std::uint64_t CWnd::SetTimer(std::uint64_t id, unsigned int milliseconds) {
    if (!m_hWnd) return 0;
    const bool started = brindle::CurrentUiTimer().Start(*WindowOf(m_hWnd), id, milliseconds);
    return started ? (id == 0 ? 1 : id) : 0;
}

bool CWnd::KillTimer(std::uint64_t id) {
    if (!m_hWnd) return false;
    brindle::CurrentUiTimer().Stop(*WindowOf(m_hWnd), id);
    return true;
}

bool CWnd::SendMessage(unsigned int message, std::uint64_t parameter) {
    for (const AFX_MSGMAP* map = GetMessageMap(); map;
         map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->nMessage != 0; ++entry) {
            if (entry->nMessage != message) continue;
            (this->*entry->pfn)(parameter);
            return true;
        }
    }
    return false;
}

const AFX_MSGMAP* CWnd::GetMessageMap() const {
    return GetThisMessageMap();
}
const AFX_MSGMAP* CWnd::GetThisMessageMap() {
    return &kMessageMap;
}
