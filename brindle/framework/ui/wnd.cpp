// Windows: those that only receive messages, and handles of the desktop's. Tests: brindle/util/timer_test.cpp and
// dialog_test.cpp.
#include "brindle/framework/ui/wnd.h"

#include <utility>

#include "brindle/platform/dialogs.h"
#include "brindle/platform/ui_timer.h"

// Receives the ticks of a window's timers; it is also what the handle of a message-only window points to.
class CWnd::Ticks final : public brindle::UiTimerTarget {
  public:
    explicit Ticks(CWnd& window) : m_window(window) {}
    // The window may be destroyed by this.
    void OnTick(std::uint64_t id) override { m_window.SendMessage(CWnd::kTimerMessage, id); }

  private:
    CWnd& m_window;
};

namespace {

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
    if (m_hWnd) return true;
    m_ticks = new Ticks(*this);
    m_hWnd = reinterpret_cast<HWND>(m_ticks);
    return true;
}

bool CWnd::Attach(HWND window) noexcept {
    if (m_hWnd || !window) return false;
    m_hWnd = window;
    return true;
}

HWND CWnd::Detach() {
    if (Ticks* ticks = std::exchange(m_ticks, nullptr)) {
        brindle::CurrentUiTimer().StopAll(*ticks);
        delete ticks;
    }
    return std::exchange(m_hWnd, nullptr);
}

bool CWnd::DestroyWindow() {
    return Detach() != nullptr;
}

std::uint64_t CWnd::SetTimer(std::uint64_t id, unsigned int milliseconds) {
    if (!m_hWnd) return 0;
    if (!m_ticks) m_ticks = new Ticks(*this);
    const bool started = brindle::CurrentUiTimer().Start(*m_ticks, id, milliseconds);
    return started ? (id == 0 ? 1 : id) : 0;
}

bool CWnd::KillTimer(std::uint64_t id) {
    if (!m_hWnd) return false;
    if (m_ticks) brindle::CurrentUiTimer().Stop(*m_ticks, id);
    return true;
}

CStringA CWnd::GetWindowTextA() const {
    return brindle::CurrentDialogs().Text(m_hWnd);
}

void CWnd::SetWindowTextA(const CStringA& text) {
    brindle::CurrentDialogs().SetText(m_hWnd, text.view());
}

bool CWnd::IsWindowEnabled() const {
    return brindle::CurrentDialogs().IsEnabled(m_hWnd);
}

void CWnd::EnableWindow(bool enable) {
    brindle::CurrentDialogs().SetEnabled(m_hWnd, enable);
}

void CWnd::Invalidate(bool erase) {
    brindle::CurrentDialogs().Invalidate(m_hWnd, erase);
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
