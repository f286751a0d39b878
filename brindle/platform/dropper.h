// Dropper: picking a colour from the screen, as states: it begins with a click, follows the pointer with a live preview
// and ends where the button is released. Windows, mouse and screen are the host's and the services'. Header only, so
// that every desktop's backend has the same. Thread: the user interface's. Tests: dropper_test.cpp.
#pragma once

#include <cstdint>

#include "brindle/framework/point.h"
#include "brindle/platform/screen_pixels.h"

namespace brindle {

// The dialog in which a colour is picked.
class DropperHost {
  public:
    virtual void CaptureMouse() = 0;  // with the dropper's cursor
    virtual void ReleaseMouse() = 0;  // with the arrow again
    virtual std::uint32_t CurrentColour() = 0;
    virtual void SetCurrentColour(std::uint32_t colour) = 0;

  protected:
    ~DropperHost() = default;
};

class Dropper {
  public:
    explicit Dropper(DropperHost& host) noexcept : m_host(host) {}

    bool IsDropping() const noexcept { return m_dropping; }
    // The dropper was clicked. Does nothing while dropping, or where pixels cannot be read.
    void Begin() {
        if (m_dropping || !CurrentScreenPixels().WhyUnavailable().empty()) return;
        m_dropping = true;
        m_before = m_host.CurrentColour();
        m_host.CaptureMouse();
    }
    // The pointer is there, in coordinates of the screen. False: not dropping, somebody else's business; so in Release.
    bool Move(CPoint at) {
        if (m_dropping) Pick(at);
        return m_dropping;
    }
    // The button was released there: the colour there is the dialog's.
    bool Release(CPoint at) {
        if (!m_dropping) return false;
        Pick(at);
        End();
        return true;
    }
    // Ends without a pick: the colour is the one before.
    void Cancel() {
        if (!m_dropping) return;
        m_host.SetCurrentColour(m_before);
        End();
    }

  private:
    void Pick(CPoint at) {
        std::uint32_t colour = 0;
        if (CurrentScreenPixels().Read(at, colour)) m_host.SetCurrentColour(colour);
    }
    void End() {
        m_dropping = false;
        m_host.ReleaseMouse();
    }

    DropperHost& m_host;
    std::uint32_t m_before = 0;
    bool m_dropping = false;
};

}  // namespace brindle
