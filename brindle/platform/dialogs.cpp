// The dialogs' slot, and what stands there without a desktop. Tests: dialogs_test.cpp.
#include "brindle/platform/dialogs.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {

class NoDialogs final : public Dialogs {
  public:
    HWND Create(unsigned, HWND, DialogEvents&) override { return nullptr; }
    void Destroy(HWND) override {}
    int RunModal(HWND) override { return kDialogFailed; }
    void EndModal(HWND, int) override {}
    void Show(HWND, bool) override {}
    int RunSheet(HWND, std::string_view, const std::vector<SheetPage>&, std::size_t, SheetEvents&) override {
        return kDialogFailed;
    }
    void SetPageModified(HWND, bool) override {}
    HWND Control(HWND, unsigned) override { return nullptr; }
    void Invalidate(HWND, bool) override {}
    std::string Text(HWND) override { return {}; }
    void SetText(HWND, std::string_view) override {}
    bool IsEnabled(HWND) override { return false; }
    void SetEnabled(HWND, bool) override {}
    bool IsChecked(HWND) override { return false; }
    void SetChecked(HWND, bool) override {}
    std::string Caption(unsigned) override { return {}; }
    std::uint32_t SystemColour(int index) override { return UsualSystemColour(index); }
    HBRUSH ControlBrush(unsigned) override { return nullptr; }
};

constinit NoDialogs g_noDialogs;
constinit ServiceSlot<Dialogs> g_dialogs;

}  // namespace

std::uint32_t UsualSystemColour(int index) noexcept {
    switch (index) {
        case kColourButtonFace:
            return 0xF0F0F0;
        case kColourButtonShadow:
            return 0xA0A0A0;
        case kColourButtonHighlight:
            return 0xFFFFFF;
        case kColourDarkShadow:
            return 0x696969;
        default:
            return 0;  // window text is black
    }
}

Dialogs& CurrentDialogs() noexcept {
    return g_dialogs.GetOr(g_noDialogs);
}

Dialogs* SetDialogs(Dialogs* dialogs) noexcept {
    return g_dialogs.Set(dialogs);
}

}  // namespace brindle
