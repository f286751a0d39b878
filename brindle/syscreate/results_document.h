// ResultsDocument: the text of a results list, written as it grows: a million results are an ordinary number, and
// nobody walks them before they are text. Internal. Tests: sys_create_test.cpp.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "brindle/framework/string_a.h"

namespace brindle {

// The "Type" of results; stored: do not change.
enum class ResultType { kState = 1, kCaption = 2, kMask = 3 };

class ResultsDocument {
  public:
    // Texts are bytes in the ANSI code page and end at their first zero byte. The attributes stand in the order in
    // which readers expect them; stored: do not change.
    void AddValue(std::size_t id, const CStringA& value, const CStringA& unit, const CStringA& header);
    void AddMask(std::string_view unit, std::string_view header);
    void AddCaption(std::string_view unit, std::string_view header);

    std::size_t Count() const noexcept { return m_count; }
    // The document. False, `xml` unchanged, when a text holds what XML cannot.
    bool Text(CStringA& xml) const;

  private:
    void Attribute(std::string_view name, std::string_view bytes);
    void Number(std::string_view name, std::size_t number);
    void End();

    std::string m_elements;  // UTF-8
    std::string m_buffer;
    std::size_t m_count = 0;
    bool m_good = true;
};

}  // namespace brindle
