// Types, octets and lines of SNMP.
#include "apps/brindle/snmp_lines.h"

#include <brindle/framework/number_text.h>
#include <brindle/library/host_text.h>

#include <algorithm>

namespace brindle::tool {
namespace {

struct Type {
    int tag;
    const char* name;
    const char* word;  // without case and blanks; the first of a tag is its name
};
constexpr Type kTypes[] = {
    {2, "INTEGER", "integer"},
    {3, "BIT STRING", "bitstring"},
    {4, "OCTET STRING", "octetstring"},
    {4, "OCTET STRING", "string"},
    {5, "NULL", "null"},
    {6, "OBJECT IDENTIFIER", "objectidentifier"},
    {6, "OBJECT IDENTIFIER", "oid"},
    {48, "SEQUENCE", "sequence"},
    {64, "IpAddress", "ipaddress"},
    {65, "Counter32", "counter32"},
    {66, "Gauge32", "gauge32"},
    {67, "TimeTicks", "timeticks"},
    {68, "Opaque", "opaque"},
    {70, "Counter64", "counter64"},
    {71, "UInteger32", "uinteger32"},
};

bool IsLineControl(char c) noexcept {
    return c == '\t' || c == '\n' || c == '\r';
}

// Five bytes of the code page have no character; the others from 80 on do.
bool Prints(char c) noexcept {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte != 0x7F && byte != 0x81 && byte != 0x8D && byte != 0x8F && byte != 0x90 &&
           byte != 0x9D;
}

bool IsText(const std::string& octets) {
    return std::all_of(octets.begin(), octets.end(), [](char c) { return Prints(c) || IsLineControl(c); });
}

// On one line.
std::string ShownText(const std::string& text) {
    std::string shown;
    for (const char c : text)
        shown += IsLineControl(c) ? "\\x" + PrintHex(static_cast<unsigned char>(c), 2) : std::string(1, c);
    return shown;
}

std::optional<int> HexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return {};
}

std::string Word(const std::string& text) {
    std::string word;
    for (const char c : text)
        if (c != ' ') word += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return word;
}

}  // namespace

std::optional<int> SnmpTypeOf(const std::string& text) {
    const NumberRead<std::int32_t> number = ReadLong(text, 10);
    const bool digits = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
    if (digits && number.value <= 255) return number.value;
    const std::string word = Word(text);
    for (const Type& type : kTypes)
        if (word == type.word) return type.tag;
    return {};
}

std::string SnmpTypeName(int type) {
    for (const Type& known : kTypes)
        if (known.tag == type) return known.name;
    return "type " + PrintInt(type);
}

bool SnmpTypeHasOctets(int type) {
    return type == 3 || type == 4 || type == 48 || type == 64 || type == 68;
}

std::string HexOctets(const std::string& octets) {
    std::string text;
    for (const char c : octets)
        text += (text.empty() ? "" : " ") + PrintHex(static_cast<unsigned char>(c), 2);
    return text;
}

std::optional<std::string> OctetsFromHex(const std::string& text) {
    std::string octets;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        const auto high = HexDigit(text[i]);
        const auto low = i + 1 < text.size() ? HexDigit(text[i + 1]) : std::nullopt;
        if (!high || !low) return {};
        octets += static_cast<char>(*high << 4 | *low);
        i += 2;
    }
    return octets;
}

std::string SnmpLine(const CSnmpVariable& variable, const std::string& octets) {
    std::string value = variable.value.str();
    if (SnmpTypeHasOctets(variable.type))
        value = variable.type == 4 && IsText(octets) ? ShownText(octets) : HexOctets(octets);
    return variable.oid.str() + " = " + SnmpTypeName(variable.type) + ": " + value;
}

nlohmann::ordered_json SnmpJson(const CSnmpVariable& variable, const std::string& octets) {
    nlohmann::ordered_json json;
    json["oid"] = variable.oid.str();
    json["type"] = variable.type;
    json["name"] = SnmpTypeName(variable.type);
    const bool hasOctets = SnmpTypeHasOctets(variable.type);
    json["value"] = TextToSystem(hasOctets ? std::string_view(octets) : variable.value.view());
    if (hasOctets) json["hex"] = HexOctets(octets);
    return json;
}

}  // namespace brindle::tool
