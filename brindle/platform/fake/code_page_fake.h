// FakeCodePage: Windows-1252 and UTF-8 without the system's converter; it can refuse a selection.
#pragma once

#include "brindle/platform/code_page.h"

namespace brindle {

class FakeCodePage final : public CodePage {
  public:
    bool Select(unsigned codePage) override;
    unsigned Selected() const override { return m_selected; }
    void AppendUtf8(std::string_view bytes, std::string& utf8) const override;
    bool AppendBytes(std::string_view utf8, std::string& bytes) const override;

    void FailSelect(bool fail) noexcept { m_failSelect = fail; }

  private:
    unsigned m_selected = kCodePageWindows1252;
    bool m_failSelect = false;
};

}  // namespace brindle
