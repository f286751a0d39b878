// ThemedTexts: which static texts of one dialog are drawn grey, and the enablers it gave out. What the three themed
// classes share; for them alone. Thread: the user interface's.
#pragma once

#include <cstdint>
#include <map>

#include "brindle/dialogs/window_enabler.h"
#include "brindle/framework/export.h"
#include "brindle/framework/map.h"
#include "brindle/framework/window_handle.h"

class CDC;
class CWnd;

namespace brindle {

// Between two colours, 0x00BBGGRR: each channel ((a + b + 1) * 50) / 100.
BRINDLE_API std::uint32_t Midpoint(std::uint32_t a, std::uint32_t b) noexcept;

// Which controls' texts are grey: a flag for each, by its window handle.
class BRINDLE_API TextFlags {
  public:
    // Keeps the flag of a control and has it drawn anew. Null: does nothing.
    void Enable(CWnd* control, int enable);
    // Sets the context's text colour for a static control whose flag is 0. Call it after the framework has chosen. Both
    // stay the caller's.
    void Colour(CDC* context, CWnd* control, unsigned int kind) const;
    // The window is gone: its handles may come again for other controls.
    void Forget() { m_flags.RemoveAll(); }

  private:
    CMap<HWND, HWND, int, int> m_flags;  // nothing: enabled
};

template <class T>
class ThemedTexts : public TextFlags {
  public:
    // One for each control, never null, valid as long as the dialog object.
    CWindowEnabler<T>* Enabler(T* dialog, unsigned int controlId) {
        return &m_enablers.try_emplace(controlId, dialog, controlId).first->second;
    }

  private:
    std::map<unsigned int, CWindowEnabler<T>> m_enablers;
};

}  // namespace brindle
