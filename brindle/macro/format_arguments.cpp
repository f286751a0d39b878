// The texts of the "%" argument fields. Tested in command_line_test.cpp.
#include "brindle/macro/format_arguments.h"

#include <charconv>

#include "brindle/address/full_address.h"
#include "brindle/library/string_table.h"
#include "brindle/macro/brindle_data.h"

namespace brindle {
namespace {

char* PutHex(char* to, unsigned value, int digits) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (int i = digits - 1; i >= 0; --i) *to++ = kDigits[(value >> (4 * i)) & 0xF];
    return to;
}

}  // namespace

bool FieldTexts::Get(char letter, std::string_view& text) {
    const FormatArguments& given = m_arguments;
    switch (letter) {
        case 'n':
            return given.n != -1 && Number(given.n, text);
        case 'q':
            return given.q != -1 && Number(given.q, text);
        case 'a':
        case 'N':
        case 'U':
        case 'P':
            return AddressPart(letter, text);
        case 'p':
            return Given(given.path, text);
        case 'c':
            return Given(given.caption, text);
        case 't':
            return Given(given.text, text);
        // Kept: the field belongs to `text`; without a help text it is removed.
        case 'h':
            return given.text && Given(given.help ? given.help : "", text);
        case 'i':
            return Number(given.status, text);
        case 'j':
        case 'v':
            return AddressStatus(letter, text);
        case 's':
            return Colour(given.status, text);
        case 'r':
            return Given(given.r, text);
        default:
            return false;
    }
}

bool FieldTexts::AddressPart(char letter, std::string_view& text) {
    const FullAddress_t* address = m_arguments.address;
    if (!address) return false;
    char* end = m_digits.data();
    if (letter == 'a' || letter == 'N') end = PutHex(end, address->net, 4);
    if (letter == 'a') *end++ = ':';
    if (letter == 'a' || letter == 'U') end = PutHex(end, address->unit, 2);
    if (letter == 'a') *end++ = ':';
    if (letter == 'a' || letter == 'P') end = PutHex(end, address->port, 2);
    text = {m_digits.data(), static_cast<std::size_t>(end - m_digits.data())};
    return true;
}

bool FieldTexts::AddressStatus(char letter, std::string_view& text) {
    if (!m_arguments.address || !m_arguments.data) return false;
    if (!m_asked) m_addressStatus = m_arguments.data->GetAddressStatus(m_arguments.address);
    m_asked = true;
    return letter == 'j' ? Number(m_addressStatus, text) : Colour(m_addressStatus, text);
}

bool FieldTexts::Given(const char* argument, std::string_view& text) const {
    if (argument) text = argument;
    return argument != nullptr;
}

bool FieldTexts::Number(int value, std::string_view& text) {
    const auto end = std::to_chars(m_digits.data(), m_digits.data() + m_digits.size(), value).ptr;
    text = {m_digits.data(), static_cast<std::size_t>(end - m_digits.data())};
    return true;
}

bool FieldTexts::Colour(int status, std::string_view& text) {
    m_colour = StatusColourName(status);
    text = m_colour.view();
    return true;
}

}  // namespace brindle
