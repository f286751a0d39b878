// File dialogs over the desktop service. Tested in file_box_test.cpp.
#include "brindle/macro/file_box.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "brindle/platform/desktop.h"

namespace brindle {
namespace {

constexpr int kBuffer = 260;

// The text as a buffer of kBuffer bytes holds it.
std::string Cut(const char* text) {
    std::array<char, kBuffer> buffer{};
    return SafeCopy(buffer.data(), text, kBuffer);
}

FileBoxRequest MakeRequest(const CStringA& file, const char* filter, const char* initialDir,
                           unsigned long flags, const char* title) {
    FileBoxRequest request;
    request.file = Cut(file);
    request.filter = Cut(filter);
    std::replace(request.filter.begin(), request.filter.end(), '|', '\0');
    request.initialDirectory = initialDir ? initialDir : "";
    request.flags = flags & 0xFFFFFFFF;
    request.title = title ? title : "";
    return request;
}

bool Ask(const FileBoxRequest& request, CStringA& file) {
    std::string chosen;
    if (!CurrentDesktop().ChooseFile(request, chosen)) return false;
    file = std::move(chosen);
    return true;
}

}  // namespace
}  // namespace brindle

int SelectFileBox(HWND owner, CStringA& file, const char* filter, const char* initialDir, unsigned long flags,
                  const char* title) {
    brindle::FileBoxRequest request = brindle::MakeRequest(file, filter, initialDir, flags, title);
    request.owner = owner;
    if (brindle::Ask(request, file)) return 1;
    // Kept: asked for and ignored; it clears the desktop's last error.
    static_cast<void>(brindle::CurrentDesktop().FileBoxError());
    return 0;
}

int SaveFileBox(HWND, CStringA& file, const char* filter, const char* initialDir, unsigned long flags,
                const char* title) {
    brindle::FileBoxRequest request = brindle::MakeRequest(file, filter, initialDir, flags, title);
    request.save = true;
    request.owner = brindle::CurrentDesktop().MainWindow();
    return brindle::Ask(request, file) ? 1 : 0;
}

char* SafeCopy(char* dst, const char* src, int size) noexcept {
    if (size < 1) return dst;
    const auto room = static_cast<std::size_t>(size);
    const std::size_t length = src ? strnlen(src, room - 1) : 0;
    if (length > 0) std::memmove(dst, src, length);
    std::memset(dst + length, 0, room - length);
    return dst;
}
