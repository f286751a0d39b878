// printf without a locale: its table, through CStringA::Format.
#include "brindle/framework/format_text.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>

namespace {

// No format attribute: some rows are formats that a compiler would rightly refuse.
std::string F(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::string text = brindle::FormatText(format, arguments);
    va_end(arguments);
    return text;
}

struct Row {
    const char* label;
    std::string actual;
    const char* expected;
};

template <std::size_t count>
void Expect(const Row (&rows)[count]) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.actual, row.expected);
    }
}

TEST(FormatText, Integers) {
    const Row rows[] = {
        {"d", F("%d", -12), "-12"},
        {"i", F("%i", 12), "12"},
        {"u", F("%u", 4294967295u), "4294967295"},
        {"smallest", F("%d", std::numeric_limits<int>::min()), "-2147483648"},
        {"smallest of 64 bits", F("%lld", std::numeric_limits<long long>::min()), "-9223372036854775808"},
        {"width", F("[%5d]", 42), "[   42]"},
        {"left", F("[%-5d]", 42), "[42   ]"},
        {"zeros", F("[%05d]", -42), "[-0042]"},
        {"left beats zeros", F("[%-05d]", 42), "[42   ]"},
        {"plus", F("%+d %+d", 1, -1), "+1 -1"},
        {"space", F("% d % d", 1, -1), " 1 -1"},
        {"plus beats space", F("%+ d", 1), "+1"},
        {"precision", F("%.4d", -42), "-0042"},
        {"precision in a width", F("[%8.4d]", -42), "[   -0042]"},
        {"precision beats zeros", F("[%08.4d]", 42), "[    0042]"},
        {"zero with precision 0", F("[%.0d]", 0), "[]"},
        {"one with precision 0", F("[%.d]", 1), "[1]"},
        {"width by argument", F("[%*d]", 5, 42), "[   42]"},
        {"negative width by argument", F("[%*d]", -5, 42), "[42   ]"},
        {"precision by argument", F("[%.*d]", 3, 7), "[007]"},
        {"negative precision by argument", F("[%.*d]", -3, 7), "[7]"},
        {"x", F("%x %X", 0xABCu, 0xABCu), "abc ABC"},
        {"address", F("%04X:%02X:%02X", 0x12u, 3u, 0x1FFu), "0012:03:1FF"},
        {"alternative x", F("%#x %#X %#x", 255u, 255u, 0u), "0xff 0XFF 0"},
        {"alternative x with zeros", F("%#06x", 255u), "0x00ff"},
        {"o", F("%o %#o %o", 8u, 8u, 0u), "10 010 0"},
        {"no sign for unsigned", F("%+u", 5u), "5"},
        {"char", F("%hhd %hhu", 0x1FF, 0x1FFu), "-1 255"},
        {"short", F("%hd %hu", 0x1FFFF, 0x1FFFFu), "-1 65535"},
        {"long", F("%ld %lu", -5L, 5UL), "-5 5"},
        {"long long", F("%lld %llu", -5LL, 18446744073709551615ULL), "-5 18446744073709551615"},
        {"j, z, t", F("%jd %zu %td", std::intmax_t{-1}, std::size_t{2}, std::ptrdiff_t{-3}), "-1 2 -3"},
        {"unsigned j", F("%ju %jx", std::uintmax_t{18446744073709551615U}, std::uintmax_t{255}),
         "18446744073709551615 ff"},
        {"colour", F("#%06X", 0xFFu), "#0000FF"},
    };
    Expect(rows);
}

TEST(FormatText, Texts) {
    const Row rows[] = {
        {"plain", F("abc"), "abc"},
        {"empty", F(""), ""},
        {"null format", F(nullptr), ""},
        {"s", F("<%s>", "abc"), "<abc>"},
        {"null text", F("<%s>", static_cast<const char*>(nullptr)), "<>"},
        {"width", F("<%5s>", "abc"), "<  abc>"},
        {"left", F("<%-5s>", "abc"), "<abc  >"},
        {"precision", F("<%.2s>", "abc"), "<ab>"},
        {"precision 0", F("<%.0s>", "abc"), "<>"},
        {"zeros do not pad texts", F("<%05s>", "abc"), "<  abc>"},
        {"high bytes", F("%s", "\xE9\xFF"), "\xE9\xFF"},
        {"c", F("%c%c", 'a', 'b'), "ab"},
        {"c in a width", F("<%3c>", 'a'), "<  a>"},
        {"percent", F("100%%"), "100%"},
        {"pointer", F("%p", reinterpret_cast<void*>(std::uintptr_t{0x1F})), "000000000000001F"},
        {"unknown conversion stands", F("<%y>"), "<%y>"},
        {"unknown conversion with flags stands", F("<%-5.2ky>"), "<%-5.2ky>"},
        {"lone percent at the end", F("5%"), "5%"},
        {"unfinished conversion at the end", F("5%-0"), "5%-0"},
        {"n takes its argument and does nothing", F("%n%d", nullptr, 5), "5"},
        {"wide text is not supported", F("<%ls%lc>%d", L"abc", 0x41, 5), "<>5"},
    };
    Expect(rows);
    const char unended[] = {'a', 'b', 'c'};
    EXPECT_EQ(F("%.3s", unended), "abc") << "no byte behind the precision is read";
    EXPECT_EQ(F("%c", 0), std::string(1, '\0'));
}

TEST(FormatText, Doubles) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Row rows[] = {
        {"f", F("%f", 1.5), "1.500000"},
        {"f with precision", F("%.2f", 2.675), "2.67"},
        {"f to even", F("%.0f %.0f", 0.5, 1.5), "0 2"},
        {"f negative", F("%.1f", -0.25), "-0.2"},
        {"f negative zero", F("%.1f", -0.0), "-0.0"},
        {"f large", F("%.0f", 1e22), "10000000000000000000000"},
        {"F", F("%.1F", 1.5), "1.5"},
        {"e", F("%e", 12345.678), "1.234568e+04"},
        {"E", F("%.1E", 0.00012), "1.2E-04"},
        {"e with a long exponent", F("%.0e", 1e100), "1e+100"},
        {"g", F("%g %g %g", 2.5, 1e6, 0.0001), "2.5 1e+06 0.0001"},
        {"g small", F("%g", 0.00001), "1e-05"},
        {"g six digits", F("%g", 3.14159265), "3.14159"},
        {"g precision 0", F("%.0g", 123.0), "1e+02"},
        {"G", F("%G", 1e-10), "1E-10"},
        {"a", F("%a", 1.5), "0x1.8p+0"},
        {"A", F("%A", -1.5), "-0X1.8P+0"},
        {"width", F("[%8.2f]", 3.14159), "[    3.14]"},
        {"zeros", F("[%08.2f]", -3.14159), "[-0003.14]"},
        {"zeros behind 0x", F("[%010a]", 1.5), "[0x001.8p+0]"},
        {"left", F("[%-8.2f]", 3.14159), "[3.14    ]"},
        {"plus", F("%+.1f % .1f", 1.5, 1.5), "+1.5  1.5"},
        {"infinity", F("%f %e %g %F", infinity, -infinity, infinity, infinity), "inf -inf inf INF"},
        {"infinity has no zeros", F("[%05f]", infinity), "[  inf]"},
        {"not a number", F("%f %G", nan, nan), "nan NAN"},
        {"long double", F("%.2Lf", 1.25L), "1.25"},
        {"between others", F("%d %.1f %s", 1, 2.5, "x"), "1 2.5 x"},
    };
    Expect(rows);
}

}  // namespace
