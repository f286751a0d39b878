// Number reading and printing without a locale. All integer readings are one scanner (ScanInteger) with the
// overflow rules laid over it; doubles go through the standard library's locale-free conversions.
// Tests: number_text_test.cpp.
#include "brindle/framework/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "brindle/framework/letter_case.h"

namespace brindle {
namespace {

constexpr std::uint32_t kMaxUnsigned = std::numeric_limits<std::uint32_t>::max();
constexpr std::int32_t kMaxInt = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMinInt = std::numeric_limits<std::int32_t>::min();

// The lower-case form of an ASCII letter, whatever the code page.
constexpr char AsciiLower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

constexpr int DigitValue(char c) noexcept {
    if (IsDigit(c)) return c - '0';
    return IsAsciiLetter(c) ? AsciiLower(c) - 'a' + 10 : std::numeric_limits<int>::max();
}

std::size_t SkipSpace(std::string_view text) noexcept {
    std::size_t at = 0;
    while (at < text.size() && IsSpace(text[at])) ++at;
    return at;
}

// Takes an optional sign; true for "-".
bool TakeSign(std::string_view text, std::size_t& at) noexcept {
    if (at >= text.size() || (text[at] != '-' && text[at] != '+')) return false;
    return text[at++] == '-';
}

bool HasHexPrefix(std::string_view text, std::size_t at) noexcept {
    return at + 1 < text.size() && text[at] == '0' && AsciiLower(text[at + 1]) == 'x';
}

struct Integer {
    std::uint32_t magnitude = 0;
    bool negative = false;
    bool overflow = false;        // the magnitude does not fit 32 bits
    bool emptyHexNumber = false;  // "0x" without a digit behind it: only its "0" was read
    std::size_t end = 0;
};

Integer ScanInteger(std::string_view text, int base) noexcept {
    Integer out;
    std::size_t at = SkipSpace(text);
    out.negative = TakeSign(text, at);
    if ((base == 0 || base == 16) && HasHexPrefix(text, at)) {
        if (at + 2 < text.size() && DigitValue(text[at + 2]) < 16) {
            base = 16;
            at += 2;
        } else {
            out.emptyHexNumber = true;
        }
    }
    if (base == 0) base = at < text.size() && text[at] == '0' ? 8 : 10;
    std::uint64_t magnitude = 0;
    for (; at < text.size() && DigitValue(text[at]) < base; ++at) {
        magnitude = magnitude * static_cast<unsigned>(base) + static_cast<unsigned>(DigitValue(text[at]));
        if (magnitude > kMaxUnsigned) {
            out.overflow = true;
            magnitude = kMaxUnsigned;
        }
        out.end = at + 1;
    }
    out.magnitude = static_cast<std::uint32_t>(magnitude);
    return out;
}

constexpr std::uint32_t Signed(const Integer& number) noexcept {
    return number.negative ? 0u - number.magnitude : number.magnitude;
}

// "inf", "infinity", "nan" and "nan(letters)"; the length of the word, or 0.
std::size_t ReadWordNumber(std::string_view text, double& value) noexcept {
    const auto startsWith = [text](std::string_view word) {
        return text.size() >= word.size() && std::equal(word.begin(), word.end(), text.begin(),
                                                        [](char w, char t) { return w == AsciiLower(t); });
    };
    if (startsWith("inf")) {
        value = std::numeric_limits<double>::infinity();
        return startsWith("infinity") ? 8 : 3;
    }
    if (!startsWith("nan")) return 0;
    value = std::numeric_limits<double>::quiet_NaN();
    if (text.size() <= 3 || text[3] != '(') return 3;
    std::size_t at = 4;
    while (at < text.size() && (IsAsciiLetter(text[at]) || IsDigit(text[at]) || text[at] == '_')) ++at;
    return at < text.size() && text[at] == ')' ? at + 1 : 3;
}

// What from_chars leaves undecided when a number is out of range: infinity or zero. `number` begins with a
// digit or a point and is well-formed; the decision is the sign of its power of ten (or of two).
double OutOfRange(std::string_view number, bool hexadecimal) noexcept {
    const int digitBase = hexadecimal ? 16 : 10;
    const char exponentLetter = hexadecimal ? 'p' : 'e';
    std::int64_t power = 0;  // of the first significant digit
    bool significant = false;
    bool behindPoint = false;
    std::size_t at = 0;
    for (; at < number.size() && (number[at] == '.' || DigitValue(number[at]) < digitBase); ++at) {
        if (number[at] == '.') {
            behindPoint = true;
            continue;
        }
        significant = significant || number[at] != '0';
        if (significant && !behindPoint) ++power;
        if (!significant && behindPoint) --power;
    }
    if (hexadecimal) power *= 4;
    if (at < number.size() && AsciiLower(number[at]) == exponentLetter) {
        const Integer exponent = ScanInteger(number.substr(at + 1), 10);
        power += exponent.negative ? -static_cast<std::int64_t>(exponent.magnitude) : exponent.magnitude;
    }
    return power > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

// A well-formed number without sign from the start of `digits`; the length of what was read, or 0.
std::size_t ReadMagnitude(std::string_view digits, bool hexadecimal, double& value) noexcept {
    const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
    const char* first = digits.data();
    // from_chars takes a sign, "inf" and "nan" as well: these were dealt with before.
    if (digits.empty() || (digits[0] != '.' && DigitValue(digits[0]) >= (hexadecimal ? 16 : 10))) return 0;
    const auto [end, error] = std::from_chars(first, first + digits.size(), value, format);
    if (error == std::errc::invalid_argument) return 0;
    const auto length = static_cast<std::size_t>(end - first);
    if (error == std::errc::result_out_of_range) value = OutOfRange(digits.substr(0, length), hexadecimal);
    return length;
}

// Decimal, with the exponent letter "d" that the runtime takes for "e": read from a copy with "e" in its
// place.
std::size_t ReadDecimal(std::string_view digits, double& value) {
    std::size_t mantissa = 0;
    while (mantissa < digits.size() && (IsDigit(digits[mantissa]) || digits[mantissa] == '.')) ++mantissa;
    if (mantissa == digits.size() || AsciiLower(digits[mantissa]) != 'd')
        return ReadMagnitude(digits, false, value);
    std::string copy(digits);
    copy[mantissa] = 'e';
    return ReadMagnitude(copy, false, value);
}

template <class Value>
std::string PrintInteger(Value value, int base) {
    std::array<char, 24> buffer;
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, base);
    return {buffer.data(), result.ptr};
}

std::string PrintFinite(double value, char conversion, int precision) {
    const auto format = conversion == 'e'   ? std::chars_format::scientific
                        : conversion == 'f' ? std::chars_format::fixed
                        : conversion == 'g' ? std::chars_format::general
                                            : std::chars_format::hex;
    // 310 digits before the point at most, then the point, the precision and the exponent.
    std::string text(static_cast<std::size_t>(std::max(precision, 0)) + 330, '\0');
    char* const last = text.data() + text.size();
    const auto result = precision < 0 ? std::to_chars(text.data(), last, value, format)
                                      : std::to_chars(text.data(), last, value, format, precision);
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    return text;
}

}  // namespace

std::int32_t ReadInt(std::string_view text) noexcept {
    return ReadLong(text, 10).value;
}

double ReadDouble(std::string_view text) {
    return ReadDoublePrefix(text).value;
}

NumberRead<std::int32_t> ReadLong(std::string_view text, int base) noexcept {
    const Integer number = ScanInteger(text, base);
    const std::uint32_t limit = static_cast<std::uint32_t>(kMaxInt) + (number.negative ? 1u : 0u);
    if (number.overflow || number.magnitude > limit)
        return {number.negative ? kMinInt : kMaxInt, number.end, true};
    return {static_cast<std::int32_t>(Signed(number)), number.end, false};
}

NumberRead<std::uint32_t> ReadUnsignedLong(std::string_view text, int base) noexcept {
    const Integer number = ScanInteger(text, base);
    return {Signed(number), number.end, number.overflow};
}

NumberRead<double> ReadDoublePrefix(std::string_view text) {
    std::size_t at = SkipSpace(text);
    const bool negative = TakeSign(text, at);
    const std::string_view rest = text.substr(at);
    NumberRead<double> out;
    std::size_t length = ReadWordNumber(rest, out.value);
    if (length == 0 && HasHexPrefix(rest, 0)) {
        length = ReadMagnitude(rest.substr(2), true, out.value);
        if (length > 0) length += 2;
    }
    if (length == 0) length = ReadDecimal(rest, out.value);
    if (length == 0) return {};
    out.end = at + length;
    if (negative) out.value = -out.value;
    out.overflow = std::isinf(out.value) && AsciiLower(rest[0]) != 'i';
    return out;
}

bool ScanHex(std::string_view& text, std::uint32_t& value) noexcept {
    const Integer number = ScanInteger(text, 16);
    if (number.end == 0 || number.emptyHexNumber) return false;
    value = Signed(number);
    text.remove_prefix(number.end);
    return true;
}

bool ScanInt(std::string_view& text, std::int32_t& value) noexcept {
    const NumberRead<std::int32_t> number = ReadLong(text, 10);
    if (number.end == 0) return false;
    value = number.value;
    text.remove_prefix(number.end);
    return true;
}

bool ReadStreamHex(std::string_view text, std::uint32_t& value) noexcept {
    const Integer number = ScanInteger(text, 16);
    if (number.end == 0 || number.emptyHexNumber) {
        value = 0;
        return false;
    }
    value = number.overflow ? kMaxUnsigned : Signed(number);
    return !number.overflow;
}

std::string PrintInt(std::int64_t value) {
    return PrintInteger(value, 10);
}

std::string PrintUnsigned(std::uint64_t value) {
    return PrintInteger(value, 10);
}

std::string PrintHex(std::uint64_t value, int digits) {
    std::string text = PrintInteger(value, 16);
    for (char& c : text)
        if (!IsDigit(c)) c = static_cast<char>(c - 'a' + 'A');
    const auto wanted = static_cast<std::size_t>(std::max(digits, 0));
    if (text.size() < wanted) text.insert(0, wanted - text.size(), '0');
    return text;
}

std::string PrintDouble(double value, char conversion, int precision) {
    const char kind = AsciiLower(conversion);
    std::string text;
    if (std::isfinite(value)) {
        text = PrintFinite(std::fabs(value), kind, precision < 0 && kind != 'a' ? 6 : precision);
        if (kind == 'a') text.insert(0, "0x");
    } else {
        text = std::isnan(value) ? "nan" : "inf";
    }
    if (std::signbit(value)) text.insert(0, 1, '-');
    if (kind != conversion)
        for (char& c : text)
            if (IsAsciiLetter(c)) c = static_cast<char>(c & ~0x20);
    return text;
}

}  // namespace brindle
