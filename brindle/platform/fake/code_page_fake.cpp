#include "brindle/platform/fake/code_page_fake.h"

#include "brindle/platform/backend.h"
#include "brindle/platform/windows1252.h"

namespace brindle {

bool FakeCodePage::Select(unsigned codePage) {
    if (m_failSelect || (codePage != kCodePageWindows1252 && codePage != kCodePageUtf8)) return false;
    m_selected = codePage;
    LetterCaseFollows(*this);
    return true;
}

void FakeCodePage::AppendUtf8(std::string_view bytes, std::string& utf8) const {
    if (m_selected == kCodePageUtf8) {
        utf8.append(bytes);
    } else {
        AppendUtf8FromWindows1252(bytes, utf8);
    }
}

bool FakeCodePage::AppendBytes(std::string_view utf8, std::string& bytes) const {
    if (m_selected != kCodePageUtf8) return AppendWindows1252FromUtf8(utf8, bytes);
    bytes.append(utf8);
    return true;
}

}  // namespace brindle
