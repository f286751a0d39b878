// The code page's slot, the two conversions everybody uses, and the letter case that goes with a code page.
#include "brindle/platform/code_page.h"

#include "brindle/framework/letter_case.h"
#include "brindle/platform/backend.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<CodePage> g_codePage;
}

CodePage& CurrentCodePage() noexcept {
    return g_codePage.GetOr(BackendCodePage());
}

CodePage* SetCodePage(CodePage* service) noexcept {
    CodePage* previous = g_codePage.Set(service);
    LetterCaseFollows(CurrentCodePage());
    return previous;
}

void LetterCaseFollows(const CodePage& service) noexcept {
    if (&service != &CurrentCodePage()) return;
    const bool latin = service.Selected() == kCodePageWindows1252;
    SetLetterCaseRule(latin ? LetterCaseRule::kWindows1252 : LetterCaseRule::kAsciiOnly);
}

std::string ToUtf8(std::string_view bytes) {
    std::string utf8;
    CurrentCodePage().AppendUtf8(bytes, utf8);
    return utf8;
}

std::string FromUtf8(std::string_view utf8) {
    std::string bytes;
    CurrentCodePage().AppendBytes(utf8, bytes);
    return bytes;
}

}  // namespace brindle
