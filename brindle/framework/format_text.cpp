// printf without a locale: the format is cut into conversions (ReadSpec), each takes its argument by type
// (FormatRun), and its text is laid out by width, precision and flags (Append...). Entry point: FormatText.
// Tests: format_text_test.cpp.
#include "brindle/framework/format_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "brindle/framework/letter_case.h"
#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

enum class Length { kNone, kChar, kShort, kLong, kLongLong, kIntMax, kSize, kPtrDiff, kLongDouble };

struct Spec {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternative = false;
    bool zeros = false;
    int width = 0;
    int precision = -1;  // negative: none given
    Length length = Length::kNone;
    char conversion = '\0';
};

class FormatRun {
  public:
    FormatRun(const char* format, va_list arguments) : m_at(format) { va_copy(m_arguments, arguments); }
    FormatRun(const FormatRun&) = delete;
    FormatRun& operator=(const FormatRun&) = delete;
    ~FormatRun() { va_end(m_arguments); }

    std::string Run() {
        while (*m_at) {
            const char* const begin = m_at++;
            if (*begin != '%') {
                m_out += *begin;
            } else if (const Spec spec = ReadSpec(); !Convert(spec)) {
                m_out.append(begin, m_at);
            }
        }
        return std::move(m_out);
    }

  private:
    Spec ReadSpec() {
        Spec spec;
        ReadFlags(spec);
        spec.width = ReadCount();
        if (spec.width < 0) {
            spec.left = true;
            spec.width = spec.width == std::numeric_limits<int>::min() ? 0 : -spec.width;
        }
        if (*m_at == '.') {
            ++m_at;
            spec.precision = ReadCount();
        }
        spec.length = ReadLength();
        spec.conversion = *m_at;
        if (*m_at) ++m_at;
        return spec;
    }

    void ReadFlags(Spec& spec) {
        for (;; ++m_at) {
            switch (*m_at) {
                case '-':
                    spec.left = true;
                    break;
                case '+':
                    spec.plus = true;
                    break;
                case ' ':
                    spec.space = true;
                    break;
                case '#':
                    spec.alternative = true;
                    break;
                case '0':
                    spec.zeros = true;
                    break;
                default:
                    return;
            }
        }
    }

    // A width or precision: digits, or "*" for an argument.
    int ReadCount() {
        if (*m_at == '*') {
            ++m_at;
            return va_arg(m_arguments, int);
        }
        const char* const begin = m_at;
        while (IsDigit(*m_at)) ++m_at;
        return ReadInt({begin, static_cast<std::size_t>(m_at - begin)});
    }

    Length ReadLength() {
        const char letter = *m_at;
        const bool twice = letter && m_at[1] == letter;
        Length length = Length::kNone;
        switch (letter) {
            case 'h':
                length = twice ? Length::kChar : Length::kShort;
                break;
            case 'l':
                length = twice ? Length::kLongLong : Length::kLong;
                break;
            case 'j':
                length = Length::kIntMax;
                break;
            case 'z':
                length = Length::kSize;
                break;
            case 't':
                length = Length::kPtrDiff;
                break;
            case 'L':
                length = Length::kLongDouble;
                break;
            default:
                return length;
        }
        m_at += length == Length::kChar || length == Length::kLongLong ? 2 : 1;
        return length;
    }

    bool Convert(const Spec& spec) {
        switch (spec.conversion) {
            case 'd':
            case 'i':
                AppendSigned(spec, TakeSigned(spec.length));
                return true;
            case 'u':
            case 'o':
            case 'x':
            case 'X':
                AppendUnsigned(spec, TakeUnsigned(spec.length));
                return true;
            case 'p':
                AppendPointer(spec);
                return true;
            case 'c':
                AppendCharacter(spec);
                return true;
            case 's':
                AppendString(spec);
                return true;
            case 'n':
                va_arg(m_arguments, void*);
                return true;
            case '%':
                m_out += '%';
                return true;
            default:
                break;
        }
        if (!spec.conversion || !std::strchr("eEfFgGaA", spec.conversion)) return false;
        AppendDouble(spec);
        return true;
    }

    std::int64_t TakeSigned(Length length) {
        switch (length) {
            case Length::kChar:
                return static_cast<signed char>(va_arg(m_arguments, int));
            case Length::kShort:
                return static_cast<short>(va_arg(m_arguments, int));
            case Length::kLong:
                return va_arg(m_arguments, long);
            case Length::kLongLong:
                return va_arg(m_arguments, long long);
            case Length::kIntMax:
                return va_arg(m_arguments, std::intmax_t);
            case Length::kSize:
            case Length::kPtrDiff:
                return va_arg(m_arguments, std::ptrdiff_t);
            default:
                return va_arg(m_arguments, int);
        }
    }

    std::uint64_t TakeUnsigned(Length length) {
        switch (length) {
            case Length::kChar:
                return static_cast<unsigned char>(va_arg(m_arguments, unsigned));
            case Length::kShort:
                return static_cast<unsigned short>(va_arg(m_arguments, unsigned));
            case Length::kLong:
                return va_arg(m_arguments, unsigned long);
            case Length::kLongLong:
                return va_arg(m_arguments, unsigned long long);
            case Length::kIntMax:
                return va_arg(m_arguments, std::uintmax_t);
            case Length::kSize:
            case Length::kPtrDiff:
                return va_arg(m_arguments, std::size_t);
            default:
                return va_arg(m_arguments, unsigned);
        }
    }

    static std::string SignOf(const Spec& spec, bool negative) {
        return negative ? "-" : spec.plus ? "+" : spec.space ? " " : "";
    }

    void AppendSigned(const Spec& spec, std::int64_t value) {
        const auto bits = static_cast<std::uint64_t>(value);
        AppendInteger(spec, SignOf(spec, value < 0), PrintUnsigned(value < 0 ? 0 - bits : bits));
    }

    void AppendUnsigned(const Spec& spec, std::uint64_t value) {
        if (spec.conversion == 'u') {
            AppendInteger(spec, "", PrintUnsigned(value));
            return;
        }
        if (spec.conversion == 'o') {
            std::string digits;
            for (std::uint64_t rest = value; rest > 0; rest >>= 3)
                digits.insert(digits.begin(), static_cast<char>('0' + (rest & 7)));
            if (digits.empty() || spec.alternative) digits.insert(0, 1, '0');
            AppendInteger(spec, "", digits);
            return;
        }
        std::string digits = PrintHex(value);
        std::string prefix = spec.alternative && value != 0 ? "0X" : "";
        if (spec.conversion == 'x') {
            for (char& c : digits) c = LowerHex(c);
            if (!prefix.empty()) prefix[1] = 'x';
        }
        AppendInteger(spec, prefix, digits);
    }

    static char LowerHex(char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c; }

    // A precision is the least number of digits, switches zero padding off, and 0 makes the number 0 empty.
    void AppendInteger(Spec spec, const std::string& prefix, std::string digits) {
        if (spec.precision >= 0) {
            spec.zeros = false;
            if (spec.precision == 0 && digits == "0") digits.clear();
            const auto wanted = static_cast<std::size_t>(spec.precision);
            if (digits.size() < wanted) digits.insert(0, wanted - digits.size(), '0');
        }
        AppendPadded(spec, prefix, digits);
    }

    void AppendPointer(Spec spec) {
        const auto value = reinterpret_cast<std::uintptr_t>(va_arg(m_arguments, void*));
        spec.zeros = false;
        AppendPadded(spec, "", PrintHex(value, static_cast<int>(2 * sizeof(void*))));
    }

    void AppendCharacter(Spec spec) {
        const char character = static_cast<char>(va_arg(m_arguments, int));
        spec.zeros = false;
        if (spec.length != Length::kLong) AppendPadded(spec, "", {&character, 1});
    }

    void AppendString(Spec spec) {
        const char* text = va_arg(m_arguments, const char*);
        spec.zeros = false;
        if (!text || spec.length == Length::kLong) text = "";
        const std::size_t most =
            spec.precision < 0 ? std::strlen(text) : strnlen(text, static_cast<std::size_t>(spec.precision));
        AppendPadded(spec, "", {text, most});
    }

    void AppendDouble(Spec spec) {
        const double value = spec.length == Length::kLongDouble
                                 ? static_cast<double>(va_arg(m_arguments, long double))
                                 : va_arg(m_arguments, double);
        std::string digits = PrintDouble(value, spec.conversion, spec.precision);
        const bool negative = digits[0] == '-';
        if (negative) digits.erase(0, 1);
        std::string prefix = SignOf(spec, negative);
        if (!IsDigit(digits[0])) spec.zeros = false;  // inf and nan are never zero-padded
        if ((spec.conversion == 'a' || spec.conversion == 'A') && IsDigit(digits[0])) {
            prefix += digits.substr(0, 2);  // zeros go behind the "0x"
            digits.erase(0, 2);
        }
        AppendPadded(spec, prefix, digits);
    }

    void AppendPadded(const Spec& spec, std::string_view prefix, std::string_view body) {
        const std::size_t used = prefix.size() + body.size();
        const auto width = static_cast<std::size_t>(spec.width);
        const std::size_t padding = width > used ? width - used : 0;
        if (!spec.left && !spec.zeros) m_out.append(padding, ' ');
        m_out += prefix;
        if (!spec.left && spec.zeros) m_out.append(padding, '0');
        m_out += body;
        if (spec.left) m_out.append(padding, ' ');
    }

    const char* m_at;
    va_list m_arguments;
    std::string m_out;
};

}  // namespace

std::string FormatText(const char* format, va_list arguments) {
    return FormatRun(format ? format : "", arguments).Run();
}

}  // namespace brindle
