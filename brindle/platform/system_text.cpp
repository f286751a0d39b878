#include "brindle/platform/system_text.h"

#include "brindle/platform/code_page.h"
#include "brindle/platform/utf8.h"

namespace brindle {

std::string ToSystemText(std::string_view bytes) {
    std::string system;
    CurrentCodePage().AppendUtf8(bytes, system);
    return system;
}

bool FromSystemText(std::string_view system, std::string& bytes) {
    bytes.clear();
    if (IsUtf8(system)) return CurrentCodePage().AppendBytes(system, bytes);
    bytes.assign(system);
    return true;
}

}  // namespace brindle
