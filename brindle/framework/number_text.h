// Numbers as text, by the rules of the C runtime's C locale whatever the process locale is. Integers have 32
// bits and saturate. Nothing here throws except when memory is out. Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "brindle/framework/export.h"

namespace brindle {

// What was read, and how far.
template <class Value>
struct NumberRead {
    Value value{};
    std::size_t end = 0;    // offset behind the number; 0 when the text begins with none
    bool overflow = false;  // the value was saturated
};

// atoi, atol: white space, an optional sign, decimal digits; the rest is ignored; no digits give 0.
BRINDLE_API std::int32_t ReadInt(std::string_view text) noexcept;
// atof: as ReadDoublePrefix, without its end.
BRINDLE_API double ReadDouble(std::string_view text);

// strtol and strtoul with base 0 (by prefix: "0x" hexadecimal, "0" octal, else decimal) or 2 to 36. A
// negative text read as unsigned is the negated magnitude, after saturation.
BRINDLE_API NumberRead<std::int32_t> ReadLong(std::string_view text, int base) noexcept;
BRINDLE_API NumberRead<std::uint32_t> ReadUnsignedLong(std::string_view text, int base) noexcept;
// strtod: decimal or hexadecimal ("0x1.8p3") with "." as the point, the exponent letter "e" or "d", "inf",
// "infinity", "nan", "nan(text)" in any case. Too large is infinity, too small is 0 with the sign kept.
BRINDLE_API NumberRead<double> ReadDoublePrefix(std::string_view text);

// The "%X" of scanf: white space, an optional sign, an optional "0x", hexadecimal digits. On success `text`
// is advanced behind the number: true; on failure, false, both arguments are unchanged. A longer number saturates.
BRINDLE_API bool ScanHex(std::string_view& text, std::uint32_t& value) noexcept;
// The "%d" of scanf, likewise.
BRINDLE_API bool ScanInt(std::string_view& text, std::int32_t& value) noexcept;
// A hexadecimal 32-bit number from the start of a text, as an input stream reads it: as ScanHex, but a number
// of more than 32 bits fails and stores FFFFFFFF, and a text without a number fails and stores 0. True: it is read.
BRINDLE_API bool ReadStreamHex(std::string_view text, std::uint32_t& value) noexcept;

// Decimal, without grouping.
BRINDLE_API std::string PrintInt(std::int64_t value);
BRINDLE_API std::string PrintUnsigned(std::uint64_t value);
// Upper-case hexadecimal, zero-padded to at least `digits` digits.
BRINDLE_API std::string PrintHex(std::uint64_t value, int digits = 1);
// printf of one double: conversion is one of e E f F g G a A; a negative precision means the default of 6
// (for a: as many digits as it takes). Infinities and not-a-number are "inf" and "nan" with the sign before
// them.
BRINDLE_API std::string PrintDouble(double value, char conversion = 'g', int precision = -1);

}  // namespace brindle
