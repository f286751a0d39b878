// Texts: line breaks, characters, UTF-8, file names, host and port. Times: utils_time.cpp. Tests: utils_test.cpp.
#include "brindle/util/utils.h"

#include <string>
#include <string_view>

#include "brindle/framework/letter_case.h"
#include "brindle/framework/number_text.h"
#include "brindle/platform/code_page.h"
#include "brindle/util/my_char_replacer.h"

namespace Orvane {
namespace {

constexpr std::string_view kInvalidInFileNames = ":|?\"<>*";
constexpr std::string_view kReplacementCharacter =
    "\xEF\xBF\xBD";  // what stands for a byte without a character

int Replace(std::string& text, Replacer<char>& replacer) {
    int changed = 0;
    std::size_t end = 0;
    for (const char c : text) {
        char replacement = c;
        const int verdict = replacer(c, replacement);
        changed += verdict != kKeepElement;
        if (verdict != kRemoveElement) text[end++] = verdict == kReplaceElement ? replacement : c;
    }
    text.resize(end);
    return changed;
}

}  // namespace

void Utils::CorrectLineBreaks(CStringA& s) {
    std::string corrected;
    std::string_view rest = s.view();
    for (auto feed = rest.find('\n'); feed != std::string_view::npos; feed = rest.find('\n')) {
        std::string_view line = rest.substr(0, feed);
        while (line.ends_with('\r')) line.remove_suffix(1);
        corrected.append(line).append("\r\n");
        rest.remove_prefix(feed + 1);
    }
    corrected.append(rest);
    s = std::move(corrected);
}

bool Utils::IsInteger(const CStringA& s) {
    const std::string_view text = s.view();
    if (text.empty()) return false;
    if (!brindle::IsDigit(text[0]) && text[0] != '-' && text[0] != '+') return false;
    return brindle::ReadLong(text, 10).end == text.size();
}

void Utils::ReplaceInvalidCharsInFileName(CStringA& path) {
    const std::string& text = path.str();
    const std::size_t separator = text.find_last_of("\\/");
    if (separator == std::string::npos) return;
    std::string name = text.substr(separator + 1);
    if (name.find_first_not_of(kInvalidInFileNames) == std::string::npos) return;
    MyCharReplacer replacer(CStringA(kInvalidInFileNames), '_', false, '_', "\t");
    Replace(name, replacer);
    path = text.substr(0, separator + 1) + name;
}

bool Utils::SplitAddressFromPort(const CStringA& s, CStringA& address, int& port) {
    const std::string_view text = s.view();
    std::size_t at = text.find('@');
    if (at == std::string_view::npos) at = text.find(':');
    if (at == std::string_view::npos) return false;
    const CStringA left(text.substr(0, at));
    const CStringA right(text.substr(at + 1));
    const bool portFirst = IsInteger(left);
    port = brindle::ReadInt((portFirst ? left : right).view());
    address = portFirst ? right : left;
    return true;
}

int Utils::StripCharacters(CStringA& s, const CStringA& chars, char replacement, bool stripControls,
                           char controlReplacement, const CStringA& keepControls) {
    MyCharReplacer replacer(chars, replacement, stripControls, controlReplacement, keepControls);
    return Replace(s.str(), replacer);
}

void Utils::FromUTF8(const CStringA& in, CStringA& out) {
    std::string bytes;
    const bool converted = brindle::CurrentCodePage().AppendBytes(in.view(), bytes);
    out = converted ? std::move(bytes) : std::string(in.view());
}

void Utils::ToUTF8(const CStringA& in, CStringA& out) {
    const brindle::CodePage& codePage = brindle::CurrentCodePage();
    std::string utf8;
    codePage.AppendUtf8(in.view(), utf8);
    std::string back;
    // The replacement character may stand in the text itself, if the code page has it.
    const bool lost = utf8.find(kReplacementCharacter) != std::string::npos &&
                      (!codePage.AppendBytes(utf8, back) || back != in.view());
    out = lost ? std::string(in.view()) : std::move(utf8);
}

void Utils::TrimRight(CStringA& s, const CStringA& set) {
    std::string& text = s.str();
    const std::size_t last = text.find_last_not_of(set.view());
    text.resize(last == std::string::npos ? 0 : last + 1);
}

void Utils::TrimRight(CStringA& s, char c) {
    TrimRight(s, CStringA(c));
}

}  // namespace Orvane
