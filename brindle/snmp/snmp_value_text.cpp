// The table of tags. Tests: snmp_value_text_test.cpp.
#include "brindle/snmp/snmp_value_text.h"

#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

bool IsSpace(char c) noexcept {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

int DigitValue(char c) noexcept {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

// Digits up to the first other character. More than 64 bits wrap, as they do on the platform this text format
// comes from, so that all 64 bits can be written without a sign, too.
std::uint64_t Digits(std::string_view text, int base) noexcept {
    std::uint64_t value = 0;
    for (const char c : text) {
        const int digit = DigitValue(c);
        if (digit >= base) break;
        value = value * static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(digit);
    }
    return value;
}

std::uint64_t ReadCounter64(std::string_view text) noexcept {
    // Kept: only a text that begins with the prefix is hexadecimal, not one with a blank or a sign before it.
    if (text.starts_with("0x") || text.starts_with("0X")) return Digits(text.substr(2), 16);
    while (!text.empty() && IsSpace(text[0])) text.remove_prefix(1);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    const std::uint64_t magnitude = Digits(text, 10);
    return negative ? 0 - magnitude : magnitude;
}

}  // namespace

SnmpForm SnmpFormOf(int tag) noexcept {
    using namespace snmp_tag;
    switch (tag) {
        case kBitString:
        case kOctetString:
        case kSequence:
        case kIpAddress:
        case kOpaque:
            return SnmpForm::kOctets;
        case kObjectIdentifier:
            return SnmpForm::kIdentifier;
        case kCounter32:
        case kGauge32:
        case kTimeTicks:
        case kUInteger32:
            return SnmpForm::kUnsigned32;
        case kCounter64:
            return SnmpForm::kCounter64;
        default:
            return SnmpForm::kInteger;
    }
}

std::string SnmpValueText(SnmpManager& manager, const SnmpValue& value) {
    std::string text;
    switch (SnmpFormOf(value.tag)) {
        case SnmpForm::kOctets:
            return value.octets.substr(0, value.octets.find('\0'));
        case SnmpForm::kIdentifier:
            manager.OidToText(value.identifier, text);
            return text;
        case SnmpForm::kUnsigned32:
            return PrintUnsigned(static_cast<std::uint32_t>(value.number));
        case SnmpForm::kCounter64:
            // Kept: values from 2^63 print negative.
            return PrintInt(static_cast<std::int64_t>(value.number));
        default:
            return PrintInt(static_cast<std::int32_t>(value.number));
    }
}

bool ReadSnmpValue(SnmpManager& manager, int tag, std::string_view text, SnmpValue& value) {
    SnmpValue read;
    read.tag = tag;
    switch (SnmpFormOf(tag)) {
        case SnmpForm::kOctets:
            read.octets = text;
            break;
        case SnmpForm::kIdentifier:
            if (!manager.TextToOid(text, read.identifier)) return false;
            break;
        case SnmpForm::kUnsigned32:
            read.number = ReadUnsignedLong(text, 0).value;
            break;
        case SnmpForm::kCounter64:
            read.number = ReadCounter64(text);
            break;
        default:
            // NULL carries no number.
            read.number = tag == snmp_tag::kNull ? 0 : static_cast<std::uint32_t>(ReadLong(text, 0).value);
    }
    value = std::move(read);
    return true;
}

}  // namespace brindle
