// TextPattern: a condition on a text of an event. "*" stands for any characters, "?" for any one character;
// everything else must be equal, case included. An empty pattern matches every text. To ask for an empty text
// write "=".
#pragma once

#include <string>
#include <string_view>

namespace brindle::host {

class TextPattern {
  public:
    TextPattern() = default;
    explicit TextPattern(std::string_view text) : m_text(text) {}

    // Every text is a pattern: returns an empty text.
    std::string Parse(std::string_view text) {
        m_text = text;
        return {};
    }
    const std::string& Text() const noexcept { return m_text; }
    bool Matches(std::string_view text) const noexcept;

  private:
    std::string m_text;
};

}  // namespace brindle::host
