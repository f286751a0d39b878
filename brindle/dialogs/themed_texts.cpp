// The colours of a dialog's static texts. Tests: themed_dialogs_test.cpp.
#include "brindle/dialogs/themed_texts.h"

#include "brindle/framework/ui/dc.h"
#include "brindle/framework/ui/wnd.h"
#include "brindle/platform/dialogs.h"

namespace brindle {

std::uint32_t Midpoint(std::uint32_t a, std::uint32_t b) noexcept {
    std::uint32_t result = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const std::uint32_t sum = ((a >> shift) & 0xFF) + ((b >> shift) & 0xFF);
        result |= (sum + 1) * 50 / 100 << shift;
    }
    return result;
}

void TextFlags::Enable(CWnd* control, int enable) {
    if (!control) return;
    m_flags[control->GetSafeHwnd()] = enable;
    control->Invalidate();
}

void TextFlags::Colour(CDC* context, CWnd* control, unsigned int kind) const {
    if (kind != kKindStatic || !context || !control) return;
    const auto* const flag = m_flags.PLookup(control->GetSafeHwnd());
    if (!flag || flag->value != 0) return;
    Dialogs& dialogs = CurrentDialogs();
    context->SetTextColor(
        Midpoint(dialogs.SystemColour(kColourButtonFace), dialogs.SystemColour(kColourWindowText)));
}

}  // namespace brindle
