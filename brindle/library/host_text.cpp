// The public side of the code page service. Tests: host_text_test.cpp.
#include "brindle/library/host_text.h"

#include "brindle/platform/code_page.h"
#include "brindle/platform/system_text.h"

namespace brindle {

std::string TextToSystem(std::string_view bytes) {
    return ToSystemText(bytes);
}

bool TextFromSystem(std::string_view system, std::string& bytes) {
    return FromSystemText(system, bytes);
}

bool SelectCodePage(unsigned number) {
    return CurrentCodePage().Select(number);
}

unsigned SelectedCodePage() {
    return CurrentCodePage().Selected();
}

}  // namespace brindle
