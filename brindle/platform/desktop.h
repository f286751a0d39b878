// Desktop: message boxes and file dialogs. A host with a desktop installs its own; without one a message becomes
// one line on the standard error and nobody can choose a file.
//
// Texts are bytes in the ANSI code page. Thread: the user interface's; every operation returns when the user has
// answered.
#pragma once

#include <string>
#include <string_view>

#include "brindle/framework/export.h"
#include "brindle/framework/window_handle.h"

namespace brindle {

enum class MessageIcon {
    kWarning,  // exclamation mark
    kError,    // stop sign
};

// What a file dialog is to show.
struct FileBoxRequest {
    bool save = false;     // to be written: the file need not exist
    HWND owner = nullptr;  // the window the dialog belongs to; null: none
    std::string file;      // shown at first
    // Pairs of a text and the patterns it stands for ("*.exe;*.com"), each with a zero behind it.
    std::string filter;
    std::string initialDirectory;  // empty: the desktop's choice
    unsigned long flags = 0;       // as the caller of the box gave them
    std::string title;             // empty: the desktop's own
};

class Desktop {
  public:
    // Shows the text with one button.
    virtual void ShowMessage(HWND owner, MessageIcon icon, std::string_view text) = 0;
    // Lets the user choose a file. False, `file` unchanged, when the user did not, or when there is no desktop.
    virtual bool ChooseFile(const FileBoxRequest& request, std::string& file) = 0;
    // Why the last ChooseFile answered false: 0: the user chose nothing.
    virtual unsigned long FileBoxError() = 0;
    // The main window of the calling thread's application; null when there is none.
    virtual HWND MainWindow() = 0;

  protected:
    ~Desktop() = default;  // never destroyed through this interface
};

// FileBoxError when there is no desktop.
constexpr unsigned long kFileBoxNoDesktop = 0xFFFF;

// The installed desktop, or one that is none: messages go to the standard error, files are not chosen.
BRINDLE_API Desktop& CurrentDesktop() noexcept;
// Installs a desktop (not owned; it must outlive its use; null: none again). Returns the one installed before, or
// null.
BRINDLE_API Desktop* SetDesktop(Desktop* desktop) noexcept;

}  // namespace brindle
