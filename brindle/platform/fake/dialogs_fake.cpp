#include "brindle/platform/fake/dialogs_fake.h"

#include <algorithm>
#include <utility>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"

namespace brindle {

FakeDialogs::Window* FakeDialogs::WindowOf(HWND handle) {
    const auto found = m_windows.find(handle);
    return found == m_windows.end() ? nullptr : &found->second;
}

FakeDialogs::Item* FakeDialogs::Find(HWND control) {
    const auto found = m_windowOfControl.find(control);
    return found == m_windowOfControl.end() ? nullptr : &m_windows.at(found->second).controls.at(control);
}

HWND FakeDialogs::NextHandle() {
    if (sameHandles && m_windows.empty()) m_handles = 0;
    return reinterpret_cast<HWND>(++m_handles * 16);
}

HWND FakeDialogs::Create(unsigned templateId, HWND owner, DialogEvents& events) {
    const auto found = templates.find(templateId);
    if (found == templates.end()) return nullptr;
    const HWND handle = NextHandle();
    Window& window = m_windows[handle];
    window.owner = WindowOf(owner) ? owner : nullptr;
    window.events = &events;
    window.title = found->second.title;
    for (const Item& each : found->second.controls) {
        const HWND control = NextHandle();
        window.controls[control] = each;
        m_windowOfControl[control] = handle;
    }
    return handle;
}

void FakeDialogs::Remove(HWND window) {
    m_windows.erase(window);
    std::erase_if(m_windowOfControl, [&](const auto& entry) { return entry.second == window; });
}

void FakeDialogs::Destroy(HWND window) {
    if (!WindowOf(window)) return;
    Remove(window);
    std::vector<HWND> owned;
    for (const auto& [handle, each] : m_windows)
        if (each.owner == window) owned.push_back(handle);
    for (const HWND each : owned) {
        DialogEvents* const events = m_windows.at(each).events;
        Destroy(each);
        events->OnGone();
    }
}

// False when the user has nothing left to do.
bool FakeDialogs::NextStep() {
    if (user.empty()) return false;
    const auto step = std::move(user.front());
    user.pop_front();
    step();
    return true;
}

int FakeDialogs::RunModal(HWND handle) {
    Window* window = WindowOf(handle);
    if (!window || window->running) return kDialogFailed;
    window->running = window->shown = true;
    if (Window* const owner = WindowOf(window->owner)) owner->enabled = false;
    while ((window = WindowOf(handle)) && !window->ended)
        if (!NextStep()) EndModal(handle, static_cast<int>(kControlCancel));
    if (!window) return static_cast<int>(kControlCancel);
    window->running = window->shown = window->ended = false;
    if (Window* const owner = WindowOf(window->owner)) owner->enabled = true;
    return window->result;
}

void FakeDialogs::EndModal(HWND handle, int result) {
    Window* const window = WindowOf(handle);
    if (!window || window->ended) return;
    window->ended = true;
    window->result = result;
}

void FakeDialogs::Show(HWND handle, bool shown) {
    if (Window* const window = WindowOf(handle)) window->shown = shown;
}

bool FakeDialogs::IsShown(HWND handle) const {
    const auto found = m_windows.find(handle);
    return found != m_windows.end() && found->second.shown;
}

int FakeDialogs::RunSheet(HWND owner, std::string_view caption, const std::vector<SheetPage>& pages,
                          std::size_t first, SheetEvents& events) {
    const auto isWindow = [this](const SheetPage& page) { return WindowOf(page.window) != nullptr; };
    if (pages.empty() || !std::all_of(pages.begin(), pages.end(), isWindow)) return kDialogFailed;
    sheet = {std::string(caption), owner, {}, std::min(first, pages.size() - 1), {}};
    for (const SheetPage& page : pages)
        sheet.tabs.push_back(page.caption.empty() ? WindowOf(page.window)->title : page.caption);
    m_sheetEvents = &events;
    m_sheetResult = 0;
    events.OnEnter(sheet.front);
    while (m_sheetResult == 0)
        if (!NextStep()) PressInSheet(kControlCancel);
    m_sheetEvents = nullptr;
    return m_sheetResult;
}

void FakeDialogs::TurnTo(std::size_t page) {
    if (!m_sheetEvents->OnLeave(sheet.front)) return;
    sheet.front = page;
    m_sheetEvents->OnEnter(page);
}

void FakeDialogs::PressInSheet(unsigned button) {
    if (button == kControlCancel) {
        m_sheetEvents->OnCancelled();
        m_sheetResult = static_cast<int>(kControlCancel);
    } else if (m_sheetEvents->OnLeave(sheet.front) && m_sheetEvents->OnApply() && button == kControlOk) {
        m_sheetResult = static_cast<int>(kControlOk);
    }
}

void FakeDialogs::SetPageModified(HWND page, bool modified) {
    if (modified) {
        sheet.modified.insert(page);
    } else {
        sheet.modified.erase(page);
    }
}

HWND FakeDialogs::Control(HWND handle, unsigned control) {
    Window* const window = WindowOf(handle);
    if (!window) return nullptr;
    for (const auto& [each, what] : window->controls)
        if (what.id == control) return each;
    return nullptr;
}

void FakeDialogs::Invalidate(HWND control, bool erase) {
    if (Item* const found = Find(control)) {
        ++found->invalidated;
        found->erased += erase ? 1 : 0;
    }
}

std::string FakeDialogs::Text(HWND handle) {
    if (const Window* const window = WindowOf(handle)) return window->title;
    const Item* const control = Find(handle);
    return control ? control->text : std::string();
}

void FakeDialogs::SetText(HWND handle, std::string_view text) {
    if (Window* const window = WindowOf(handle)) window->title = text;
    if (Item* const control = Find(handle)) control->text = text;
}

bool FakeDialogs::IsEnabled(HWND handle) {
    if (const Window* const window = WindowOf(handle)) return window->enabled;
    const Item* const control = Find(handle);
    return control && control->enabled;
}

void FakeDialogs::SetEnabled(HWND handle, bool enabled) {
    if (Window* const window = WindowOf(handle)) window->enabled = enabled;
    if (Item* const control = Find(handle)) control->enabled = enabled;
}

bool FakeDialogs::IsChecked(HWND handle) {
    const Item* const control = Find(handle);
    return control && control->checked;
}

void FakeDialogs::SetChecked(HWND handle, bool checked) {
    Item* const control = Find(handle);
    if (control && control->kind == kKindButton) control->checked = checked;
}

std::string FakeDialogs::Caption(unsigned captionId) {
    const auto found = captions.find(captionId);
    return found == captions.end() ? std::string() : found->second;
}

std::uint32_t FakeDialogs::SystemColour(int index) {
    const auto found = colours.find(index);
    return found == colours.end() ? UsualSystemColour(index) : found->second;
}

HBRUSH FakeDialogs::ControlBrush(unsigned kind) {
    return reinterpret_cast<HBRUSH>(std::size_t{kind} + 0x1000);
}

void FakeDialogs::Click(HWND control) {
    const Item* const found = Find(control);
    if (found && found->enabled) WindowOf(m_windowOfControl.at(control))->events->OnCommand(found->id);
}

void FakeDialogs::Type(HWND control, std::string_view text) {
    Item* const found = Find(control);
    if (!found || !found->enabled) return;
    found->text = text;
    WindowOf(m_windowOfControl.at(control))->events->OnCommand(found->id);
}

void FakeDialogs::Close(HWND window) {
    if (Window* const found = WindowOf(window)) found->events->OnCommand(kControlCancel);
}

std::uint32_t FakeDialogs::DrawnColour(HWND control) {
    const Item* const found = Find(control);
    if (!found) return 0;
    RecordingSurface surface;
    CDC context(surface);
    context.SetTextColor(SystemColour(kColourWindowText));
    WindowOf(m_windowOfControl.at(control))->events->OnControlColour(context, control, found->kind);
    return static_cast<std::uint32_t>(context.GetTextColor());
}

}  // namespace brindle
