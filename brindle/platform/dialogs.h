// Dialogs: windows made from the host's templates, and what the library needs of the controls in them. A template is
// known by its number and is registered with the backend; controls are known by theirs.
//
// A handle is good from the operation that returned it until its window is gone, however that came about. Any other
// handle, null too, is answered as no window: nothing happens, and the answer is null, false or empty. Texts are bytes
// in the ANSI code page. Thread: the user interface's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/window_handle.h"

class CDC;

namespace brindle {

// The buttons every dialog may have, and what its modal run then returns.
constexpr unsigned kControlOk = 1;
constexpr unsigned kControlCancel = 2;
// A modal run that could not begin.
constexpr int kDialogFailed = -1;

// Kinds of controls, as a control's colour is asked for.
constexpr unsigned kKindEdit = 1;
constexpr unsigned kKindList = 2;
constexpr unsigned kKindButton = 3;
constexpr unsigned kKindStatic = 6;

// Colours of the system, by the numbers hosts use.
constexpr int kColourWindowText = 8;
constexpr int kColourButtonFace = 15;
constexpr int kColourButtonShadow = 16;
constexpr int kColourButtonHighlight = 20;
constexpr int kColourDarkShadow = 21;

// What happens in a window. An operation may destroy the window.
class DialogEvents {
  public:
    // A button was clicked, or the user changed a text or a choice. Closing the window is kControlCancel.
    virtual void OnCommand(unsigned control) = 0;
    // A control is about to be drawn; the context has the usual text colour, and what stands there afterwards is used.
    virtual void OnControlColour(CDC& context, HWND control, unsigned kind) = 0;
    // The window went without Destroy: its owner did, or the desktop. Its handles are good no more; the receiver is not
    // called again.
    virtual void OnGone() = 0;

  protected:
    ~DialogEvents() = default;  // never destroyed through this interface
};

// One page of a sheet.
struct SheetPage {
    HWND window = nullptr;  // made by Create without an owner; destroyed by its maker, after the run
    std::string caption;    // empty: the template's
};

// What happens in a sheet of pages.
class SheetEvents {
  public:
    virtual bool OnLeave(std::size_t page) = 0;  // false: the page stays in front
    virtual void OnEnter(std::size_t page) = 0;  // also of the first page
    virtual bool OnApply() = 0;      // OK or Apply, after OnLeave agreed; false: the sheet stays open
    virtual void OnCancelled() = 0;  // the sheet was cancelled or closed

  protected:
    ~SheetEvents() = default;
};

class Dialogs {
  public:
    // A hidden window filled by the template. `events` must live until Destroy or OnGone. Null: no such template, or
    // no desktop.
    virtual HWND Create(unsigned templateId, HWND owner, DialogEvents& events) = 0;
    // The window and its controls are gone when this returns; a modal run of it ends with kControlCancel.
    virtual void Destroy(HWND window) = 0;
    // Shows the window in front of its owner, which takes no input meanwhile, until EndModal; returns its result, also
    // when EndModal was called before. kDialogFailed: no such window, or it runs already.
    virtual int RunModal(HWND window) = 0;
    virtual void EndModal(HWND window, int result) = 0;
    virtual void Show(HWND window, bool shown) = 0;
    // Shows pages behind tabs until OK (kControlOk) or cancel (kControlCancel). kDialogFailed: there is no page, or one
    // that is no window. Afterwards the pages are hidden windows again.
    virtual int RunSheet(HWND owner, std::string_view caption, const std::vector<SheetPage>& pages,
                         std::size_t first, SheetEvents& events) = 0;
    // Whether Apply is offered in the sheet that shows this page.
    virtual void SetPageModified(HWND page, bool modified) = 0;

    // The control of a window, or null.
    virtual HWND Control(HWND window, unsigned control) = 0;
    // Has the control drawn anew soon; the colour of its text is asked for again.
    virtual void Invalidate(HWND control, bool erase) = 0;
    // Of a window or of a control; line breaks are LF.
    virtual std::string Text(HWND window) = 0;
    virtual void SetText(HWND window, std::string_view text) = 0;
    virtual bool IsEnabled(HWND window) = 0;
    virtual void SetEnabled(HWND window, bool enabled) = 0;
    // Of a check box or a radio button.
    virtual bool IsChecked(HWND control) = 0;
    virtual void SetChecked(HWND control, bool checked) = 0;

    // The text of a caption's number, as the host registered it; else empty.
    virtual std::string Caption(unsigned captionId) = 0;
    // 0x00BBGGRR; 0 for a number not named above.
    virtual std::uint32_t SystemColour(int index) = 0;
    // What the desktop paints the ground of such a control with.
    virtual HBRUSH ControlBrush(unsigned kind) = 0;

  protected:
    ~Dialogs() = default;  // never destroyed through this interface
};

// The system colours of a screen that nobody has changed: black on light grey.
BRINDLE_API std::uint32_t UsualSystemColour(int index) noexcept;

// Without a desktop no window can be made; the colours are the usual ones.
BRINDLE_API Dialogs& CurrentDialogs() noexcept;
// Installs a service (not owned; it must outlive its use; null: none again). Returns the one installed before, or
// null.
BRINDLE_API Dialogs* SetDialogs(Dialogs* dialogs) noexcept;

}  // namespace brindle
