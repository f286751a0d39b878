// What a desktop host on Qt 6 gives to its dialogs: templates and captions by number, and windows as handles.
//
//   brindle::RegisterDialogTemplate(kRenameTemplate, [](QWidget& window) {
//       window.setWindowTitle("Rename");
//       auto* name = new QLineEdit;
//       brindle::SetControlId(*name, kName);
//       auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
//       auto* form = new QFormLayout(&window);
//       form->addRow("&Name", name);
//       form->addRow(buttons);
//   });
//
// A form made with Qt Designer fills the window with its setupUi; there a control's number is its dynamic property
// "controlId". The OK and Cancel buttons of a QDialogButtonBox are 1 and 2 by themselves.
//
// Thread: the user interface's.
#pragma once

#include <functional>
#include <string>

#include "brindle/framework/export.h"
#include "brindle/framework/window_handle.h"

class QWidget;

namespace brindle {

using FillDialog = std::function<void(QWidget& window)>;

// Fills an empty window with its layout and controls; the window's title is the dialog's, or the tab's of a page. What
// was registered under that number before is replaced; null: there is none any more.
BRINDLE_API void RegisterDialogTemplate(unsigned templateId, FillDialog fill);
// The text, in the ANSI code page, of the caption that a property page names by that number.
BRINDLE_API void RegisterDialogCaption(unsigned captionId, std::string text);
// Gives a control of a template its number.
BRINDLE_API void SetControlId(QWidget& control, unsigned controlId);

// A widget as the library hands it on, as the owner of a dialog for example. Null for null.
BRINDLE_API HWND HandleOf(QWidget* widget) noexcept;
// The widget of a handle; it stays its parent's. Null when there is no such widget any more, and without a
// QApplication.
BRINDLE_API QWidget* WidgetOf(HWND handle);

}  // namespace brindle
