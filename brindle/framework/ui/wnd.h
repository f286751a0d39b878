// CWnd: the base of what receives a window's messages. A CWnd has either a message-only window of its own, which is
// never shown, or the handle of a window of the desktop: a dialog (dialog.h) or one of its controls. Ticks of timers
// are routed through the class's message map.
//
// Thread: made, used and destroyed on the user-interface thread, whose event loop delivers the messages.
#pragma once

#include <cstdint>

#include "brindle/framework/object.h"
#include "brindle/framework/string_a.h"
#include "brindle/framework/window_handle.h"

class CWnd;

// Message maps: which operation of a class receives which message. The map of a class goes before its base's.
struct AFX_MSGMAP_ENTRY {
    unsigned int nMessage;  // 0: the end of the map
    // The operation; what the parameter is depends on the message.
    void (CWnd::*pfn)(std::uint64_t parameter);
};
// One class's map and the way to its base's.
struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)();  // null: there is none
    const AFX_MSGMAP_ENTRY* lpEntries;
};

class BRINDLE_API CWnd : public CObject {
  public:
    static constexpr unsigned int kTimerMessage = 0x0113;  // its parameter is the timer's identifier

    CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    ~CWnd() override;  // destroys the window
    const CRuntimeClass* GetRuntimeClass() const override;
    static const CRuntimeClass* GetThisClass();

    // Ends the window and with it its timers. False when there was none. The window of an attached handle is only let
    // go: it stays its maker's.
    virtual bool DestroyWindow();
    // Takes a handle of the desktop; false, nothing changed, when there is a window already or `window` is null.
    bool Attach(HWND window) noexcept;

    HWND GetSafeHwnd() const noexcept { return m_hWnd; }
    // Starts the timer `id`, or gives it a new period; ticks arrive as timer messages. 0 when there is no window or the
    // system gives no timer, else `id`, or 1 for 0.
    std::uint64_t SetTimer(std::uint64_t id, unsigned int milliseconds);
    // False when there is no window.
    bool KillTimer(std::uint64_t id);
    // Of a window or a control of the desktop; a message-only window has no text, and is neither drawn nor disabled.
    CStringA GetWindowTextA() const;
    void SetWindowTextA(const CStringA& text);
    bool IsWindowEnabled() const;
    void EnableWindow(bool enable);
    // Has the window drawn anew soon; `erase`: with its ground.
    void Invalidate(bool erase = true);
    // Calls the operation that the message map names; false when none does.
    bool SendMessage(unsigned int message, std::uint64_t parameter);

    static const CRuntimeClass classCWnd;

  protected:
    // Lets the window's handle go, and ends its timers; null when there was none.
    HWND Detach();
    // Makes a message-only window; true when there is one already. The handle is for this class alone: it is no
    // window that a desktop could show something in.
    bool CreateMessageWindow();

    // The message map of the object's own class; never null, a constant.
    virtual const AFX_MSGMAP* GetMessageMap() const;
    static const AFX_MSGMAP* GetThisMessageMap();

  private:
    class Ticks;

    HWND m_hWnd = nullptr;     // null: there is no window
    Ticks* m_ticks = nullptr;  // receives the ticks of the timers; made when first needed
};
