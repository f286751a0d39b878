// Between the library's bytes and the document's UTF-8. Texts of plain ASCII, nearly all of them, are not
// converted: they are the same in every code page.
#pragma once

#include <string>
#include <string_view>

#include "brindle/platform/code_page.h"
#include "brindle/platform/utf8.h"

namespace brindle {

inline bool IsAscii(std::string_view text) noexcept {
    return AsciiPrefix(text) == text.size();
}

// The UTF-8 form: the text itself or `buffer`. Null reads as "". The result ends with a zero byte.
inline std::string_view Utf8View(const char* bytes, std::string& buffer) {
    const std::string_view text = bytes ? bytes : "";
    if (IsAscii(text)) return text;
    buffer.clear();
    CurrentCodePage().AppendUtf8(text, buffer);
    return buffer;
}

// `bytes` must not be where `utf8` lies.
inline void AssignBytes(std::string_view utf8, std::string& bytes) {
    if (IsAscii(utf8)) {
        bytes.assign(utf8);
    } else {
        bytes.clear();
        CurrentCodePage().AppendBytes(utf8, bytes);
    }
}

}  // namespace brindle
