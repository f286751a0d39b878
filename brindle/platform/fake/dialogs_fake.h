// FakeDialogs: windows in memory. A test registers templates and says what the user does while a window runs.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "brindle/platform/dialogs.h"

namespace brindle {

class FakeDialogs final : public Dialogs {
  public:
    struct Item {
        unsigned id = 0;
        unsigned kind = kKindStatic;
        std::string text;
        bool enabled = true;
        bool checked = false;
        int invalidated = 0;  // how often it was to be drawn anew
        int erased = 0;       // of these, with its ground
    };

    HWND Create(unsigned templateId, HWND owner, DialogEvents& events) override;
    void Destroy(HWND window) override;
    int RunModal(HWND window) override;
    void EndModal(HWND window, int result) override;
    void Show(HWND window, bool shown) override;
    int RunSheet(HWND owner, std::string_view caption, const std::vector<SheetPage>& pages, std::size_t first,
                 SheetEvents& events) override;
    void SetPageModified(HWND page, bool modified) override;
    HWND Control(HWND window, unsigned control) override;
    void Invalidate(HWND control, bool erase) override;
    std::string Text(HWND window) override;
    void SetText(HWND window, std::string_view text) override;
    bool IsEnabled(HWND window) override;
    void SetEnabled(HWND window, bool enabled) override;
    bool IsChecked(HWND control) override;
    void SetChecked(HWND control, bool checked) override;
    std::string Caption(unsigned captionId) override;
    std::uint32_t SystemColour(int index) override;
    HBRUSH ControlBrush(unsigned kind) override;

    // What the user does in the runs to come, one after the other; a run with nothing left to do is cancelled.
    std::deque<std::function<void()>> user;
    // The user's ways.
    void Click(HWND control);
    void Type(HWND control, std::string_view text);
    void Close(HWND window);             // a dialog, by its frame
    void TurnTo(std::size_t page);       // of the sheet that runs
    void PressInSheet(unsigned button);  // kControlOk, kControlCancel or kApply
    static constexpr unsigned kApply = 3;

    // Has the control drawn: the colour of its text.
    std::uint32_t DrawnColour(HWND control);
    bool IsShown(HWND window) const;
    Item* Find(HWND control);

    struct Template {
        std::string title;
        std::vector<Item> controls;
    };
    std::map<unsigned, Template> templates;
    std::map<unsigned, std::string> captions;
    std::map<int, std::uint32_t> colours;  // the usual ones where there is none
    bool sameHandles = false;              // windows made anew get the handles of those that are gone

    struct Sheet {
        std::string caption;
        HWND owner = nullptr;
        std::vector<std::string> tabs;
        std::size_t front = 0;
        std::set<HWND> modified;
    };
    Sheet sheet;  // the last one

  private:
    struct Window {
        HWND owner = nullptr;
        DialogEvents* events = nullptr;
        std::string title;
        bool enabled = true;
        bool shown = false;
        bool running = false;
        bool ended = false;
        int result = 0;
        std::map<HWND, Item> controls;
    };
    Window* WindowOf(HWND handle);
    HWND NextHandle();
    void Remove(HWND window);
    bool NextStep();

    std::map<HWND, Window> m_windows;
    std::size_t m_handles = 0;
    std::map<HWND, HWND> m_windowOfControl;
    SheetEvents* m_sheetEvents = nullptr;
    int m_sheetResult = 0;
};

}  // namespace brindle
