// Arguments become values. Tests: tool_test.cpp.
#include "apps/brindle/cli_values.h"

#include <brindle/address/address_ov.h>
#include <brindle/address/full_address.h>
#include <brindle/framework/number_text.h>
#include <brindle/library/host_text.h>

#include <charconv>
#include <cstdint>

#include "apps/brindle/cli_output.h"

namespace brindle::tool {
namespace {

[[noreturn]] void Refuse(const std::string& what, const std::string& why) {
    throw Failure(kWrongUsage, what, why);
}

// The first character of a UTF-8 text that has no byte in the code page, as "U+2192".
std::string FirstWithoutByte(std::string_view utf8) {
    std::string ignored;
    while (!utf8.empty()) {
        const auto lead = static_cast<unsigned char>(utf8[0]);
        std::size_t length = 1;
        while (length < utf8.size() && (static_cast<unsigned char>(utf8[length]) & 0xC0U) == 0x80U) ++length;
        if (!TextFromSystem(utf8.substr(0, length), ignored)) {
            std::uint32_t number = lead & (0xFFU >> (length + 1));
            for (std::size_t i = 1; i < length; ++i)
                number = number << 6 | (static_cast<unsigned char>(utf8[i]) & 0x3FU);
            return "U+" + PrintHex(number, 4);
        }
        utf8.remove_prefix(length);
    }
    return {};
}

}  // namespace

std::string ToBytes(std::string_view argument, const std::string& what) {
    std::string bytes;
    if (TextFromSystem(argument, bytes)) return bytes;
    Refuse(what, "the character " + FirstWithoutByte(argument) + " has no byte in code page " +
                     std::to_string(SelectedCodePage()));
}

std::string ShownArgument(std::string_view argument) {
    std::string bytes;
    TextFromSystem(argument, bytes);
    return bytes;
}

int ToNumber(std::string_view text, const std::string& what) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, 10);
    if (error == std::errc() && stop == end) return number;
    const bool tooLarge = error == std::errc::result_out_of_range && stop == end;
    Refuse(what, "\"" + std::string(text) + "\" is " + (tooLarge ? "beyond 32 bits" : "no decimal number"));
}

CAddressOv ToAddress(const std::string& text, const std::string& what) {
    CAddressOv address;
    if (!address.SetAddress(text.c_str()))
        Refuse(what, "\"" + text + "\" is no address (net:unit:port in hexadecimal)");
    return address;
}

FullAddress_t ToFullAddress(const std::string& text, const std::string& what) {
    FullAddress_t full{};
    ToAddress(text, what).GetFullAddressStruct(full, FullAddress_t{});
    return full;
}

Assignment ToAssignment(const std::string& text, const std::string& what) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) Refuse(what, "\"" + text + "\" has no \"=\" (NAME=VALUE)");
    return {text.substr(0, equals), text.substr(equals + 1)};
}

}  // namespace brindle::tool
