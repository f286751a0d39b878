// FormatArguments: what one call of the formatter was given; FieldTexts: the text of each "%" field made from it.
#pragma once

#include <array>
#include <string_view>

#include "brindle/framework/string_a.h"

struct FullAddress_t;
class IBrindleData;

namespace brindle {

// Every pointer may be null; n and q are absent when -1.
struct FormatArguments {
    const FullAddress_t* address;
    const char* path;
    const char* caption;
    const char* text;
    const char* help;
    int status;
    const char* r;
    int n;
    int q;
    IBrindleData* data;  // the host's object, or null
};

// FormatCommandLineEx with these; `data` is not looked at, the registered object answers.
void FormatWith(CStringA& line, const FormatArguments& arguments);

class FieldTexts {
  public:
    explicit FieldTexts(const FormatArguments& arguments) : m_arguments(arguments) {}

    // What "%letter" is replaced by. False when that field stays as typed. The text is valid until the next call.
    // Asks the host for the address's status at most once.
    bool Get(char letter, std::string_view& text);

  private:
    bool AddressPart(char letter, std::string_view& text);
    bool AddressStatus(char letter, std::string_view& text);
    bool Given(const char* argument, std::string_view& text) const;
    bool Number(int value, std::string_view& text);
    bool Colour(int status, std::string_view& text);

    const FormatArguments& m_arguments;
    std::array<char, 16> m_digits{};
    CStringA m_colour;
    bool m_asked = false;
    int m_addressStatus = 0;  // valid once m_asked
};

}  // namespace brindle
