// See xml_dom_libxml2_decode.h. The names are a closed list: an encoding named by a file never makes iconv
// look for a converter of that name.
#include "brindle/platform/linux/xml_dom_libxml2_decode.h"

#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <optional>

#include "brindle/platform/utf8.h"
#include "brindle/platform/windows1252.h"
#include "brindle/platform/xml_dom.h"

namespace brindle {
namespace {

constexpr auto kIconvNames = std::to_array<std::string_view>({
    "US-ASCII",     "ASCII",        "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-3",   "ISO-8859-4",
    "ISO-8859-5",   "ISO-8859-6",   "ISO-8859-7",   "ISO-8859-8",   "ISO-8859-9",   "ISO-8859-10",
    "ISO-8859-11",  "ISO-8859-13",  "ISO-8859-14",  "ISO-8859-15",  "ISO-8859-16",  "WINDOWS-874",
    "WINDOWS-1250", "WINDOWS-1251", "CP1251",       "CP1250",       "WINDOWS-1253", "WINDOWS-1254",
    "WINDOWS-1255", "WINDOWS-1256", "WINDOWS-1257", "WINDOWS-1258", "LATIN1",       "KOI8-R",
    "KOI8-U",       "SHIFT_JIS",    "EUC-JP",       "EUC-KR",       "GB2312",       "GBK",
    "GB18030",      "BIG5",
});

Result Refused(std::string what) {
    return Result::Error(ErrorCode::kNotWellFormed, std::move(what), 1, 1);
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string UpperCase(std::string_view text) {
    std::string upper(text);
    for (char& c : upper)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return upper;
}

void SkipBlanks(std::string_view& text) {
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
}

// The encoding named by the declaration the text begins with, in upper case. What is wrong with a declaration
// is the parser's business.
std::optional<std::string> DeclaredEncoding(std::string_view text) {
    if (!text.starts_with("<?xml") || text.size() < 6 || !IsBlank(text[5])) return std::nullopt;
    text = text.substr(0, text.find("?>"));
    const std::size_t at = text.find("encoding");
    if (at == std::string_view::npos || !IsBlank(text[at - 1])) return std::nullopt;
    text.remove_prefix(at + 8);
    SkipBlanks(text);
    if (text.empty() || text.front() != '=') return std::nullopt;
    text.remove_prefix(1);
    SkipBlanks(text);
    if (text.empty() || (text.front() != '"' && text.front() != '\'')) return std::nullopt;
    const std::size_t end = text.find(text.front(), 1);
    if (end == std::string_view::npos) return std::nullopt;
    return UpperCase(text.substr(1, end - 1));
}

Result DecodeUtf16(std::string_view bytes, bool bigEndian, std::string& utf8) {
    if (bytes.size() % 2 != 0) return Refused("half a UTF-16 unit at the end");
    const auto unitAt = [&](std::size_t at) {
        const auto first = static_cast<unsigned char>(bytes[at]);
        const auto second = static_cast<unsigned char>(bytes[at + 1]);
        return static_cast<char32_t>(bigEndian ? first << 8 | second : second << 8 | first);
    };
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        char32_t character = unitAt(at);
        if (character >= 0xD800 && character < 0xE000) {
            const char32_t low = at + 2 < bytes.size() ? unitAt(at + 2) : 0;
            if (character >= 0xDC00 || low < 0xDC00 || low >= 0xE000)
                return Refused("half a surrogate pair in UTF-16");
            character = 0x10000 + ((character - 0xD800) << 10) + (low - 0xDC00);
            at += 2;
        }
        EncodeUtf8(character, utf8);
    }
    return {};
}

Result DecodeByIconv(std::string_view bytes, const std::string& name, std::string& utf8) {
    const iconv_t converter = iconv_open("UTF-8", name.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1)) return Refused("unknown encoding " + name);
    const std::unique_ptr<void, int (*)(void*)> open(converter, &iconv_close);
    char* in = const_cast<char*>(bytes.data());  // iconv's signature; it does not write there
    std::size_t left = bytes.size();
    bool good = true;
    while (left > 0 && good) {
        char block[4096];
        char* out = block;
        std::size_t room = sizeof block;
        good = iconv(converter, &in, &left, &out, &room) != static_cast<std::size_t>(-1) || errno == E2BIG;
        utf8.append(block, static_cast<std::size_t>(out - block));
    }
    return good ? Result{} : Refused("bytes that are not in the declared encoding " + name);
}

Result DecodeDeclared(std::string_view bytes, const std::string& name, std::string& utf8) {
    if (name == "WINDOWS-1252" || name == "CP1252") {
        AppendUtf8FromWindows1252(bytes, utf8);
        return {};
    }
    for (const std::string_view known : kIconvNames)
        if (name == known) return DecodeByIconv(bytes, name, utf8);
    return Refused("unknown encoding " + name.substr(0, 40));
}

}  // namespace

Result DecodeXmlFile(std::string_view bytes, std::string& buffer, std::string_view& utf8) {
    using namespace std::string_view_literals;
    buffer.clear();
    utf8 = bytes;
    if (bytes.starts_with("\xEF\xBB\xBF"sv)) {
        utf8.remove_prefix(3);
        return {};
    }
    Result result;
    const bool bigMark = bytes.starts_with("\xFE\xFF"sv);
    const bool littleMark = bytes.starts_with("\xFF\xFE"sv);
    if (bigMark || littleMark) {
        result = DecodeUtf16(bytes.substr(2), bigMark, buffer);
    } else if (bytes.starts_with("\0<\0?"sv) || bytes.starts_with("<\0?\0"sv)) {
        result = DecodeUtf16(bytes, bytes[0] == '\0', buffer);
    } else {
        const auto declared = DeclaredEncoding(bytes);
        if (!declared || *declared == "UTF-8" || *declared == "UTF8") return {};
        result = DecodeDeclared(bytes, *declared, buffer);
    }
    utf8 = buffer;
    return result;
}

}  // namespace brindle
