// FakeDesktop: records what is shown, and answers file dialogs as a test says.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "brindle/platform/desktop.h"

namespace brindle {

class FakeDesktop final : public Desktop {
  public:
    struct Message {
        HWND owner;
        MessageIcon icon;
        std::string text;
    };

    void ShowMessage(HWND owner, MessageIcon icon, std::string_view text) override {
        messages.push_back({owner, icon, std::string(text)});
    }
    bool ChooseFile(const FileBoxRequest& request, std::string& file) override;
    unsigned long FileBoxError() override;
    HWND MainWindow() override { return mainWindow; }

    std::vector<Message> messages;
    std::vector<FileBoxRequest> requests;
    std::optional<std::string> choice;  // what the user chooses; nothing: the user cancels
    unsigned long error = 0;            // of a dialog that could not be shown
    int errorsAsked = 0;
    HWND mainWindow = nullptr;
};

}  // namespace brindle
