// Arbitrary bytes through the text operations: what each promises about its result holds for every text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/util/utils.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

void CheckLineBreaks(const std::string& text) {
    CStringA once = text;
    Orvane::Utils::CorrectLineBreaks(once);
    CStringA twice = once;
    Orvane::Utils::CorrectLineBreaks(twice);
    Require(once == twice);
    const std::string_view corrected = once.view();
    for (std::size_t at = 0; (at = corrected.find('\n', at)) != std::string_view::npos; ++at)
        Require(at > 0 && corrected[at - 1] == '\r' && (at < 2 || corrected[at - 2] != '\r'));
}

void CheckUtf8(const std::string& text) {
    CStringA utf8;
    CStringA back;
    Orvane::Utils::ToUTF8(text, utf8);
    Orvane::Utils::FromUTF8(utf8, back);
    Require(back == text);  // the code page converts every byte both ways
    Orvane::Utils::FromUTF8(text, back);
    Require(back.GetLength() <= static_cast<int>(text.size()));
}

void CheckNames(const std::string& text) {
    CStringA path = text;
    Orvane::Utils::ReplaceInvalidCharsInFileName(path);
    Require(path.GetLength() == static_cast<int>(text.size()));
    CStringA stripped = text;
    const int count = Orvane::Utils::StripCharacters(stripped, "abc", '\0', true, '\0', "\t");
    Require(stripped.GetLength() + count == static_cast<int>(text.size()));
    Require(Orvane::Utils::StripCharacters(stripped, "abc", '\0', true, '\0', "\t") == 0);
    Orvane::Utils::TrimRight(stripped, CStringA(text));
    Require(text.empty() || stripped.IsEmpty());  // nothing is left but characters of the text
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckLineBreaks(text);
    CheckUtf8(text);
    CheckNames(text);

    CStringA address;
    int port = 0;
    if (Orvane::Utils::SplitAddressFromPort(text, address, port))
        Require(address.GetLength() < static_cast<int>(size));
    std::int64_t time = -2;
    Require(Orvane::Utils::ParseDateTimeString(text, time) == (time != -2));
    Require(time >= -2);
    const CStringA resolved = Orvane::Utils::ResolveTimebasedPath(text);
    Require(resolved == text || resolved.GetLength() < 128);
    if (Orvane::Utils::IsInteger(text)) Require(text.find_first_not_of("+-0123456789") == std::string::npos);
    return 0;
}
