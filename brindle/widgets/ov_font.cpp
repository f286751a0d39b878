// OV_Font. Tests: ov_font_test.cpp.
#include "brindle/widgets/ov_font.h"

#include <cstdlib>
#include <cstring>

#include "brindle/framework/mul_div.h"
#include "brindle/platform/screen.h"

namespace {

constexpr std::int64_t kUnitsPerPoint = 10'000;  // of a currency value
constexpr std::int64_t kQuarterPoint = kUnitsPerPoint / 4;
constexpr int kPointsPerInch = 72;

template <class Value, class Take>
void Read(IFontDisp& font, FontProperty property, const Take& take) {
    FontValue value;
    if (!font.GetProperty(property, value)) return;
    if (const Value* read = std::get_if<Value>(&value)) take(*read);
}

void ReadFlag(IFontDisp& font, FontProperty property, std::uint8_t& flag) {
    Read<bool>(font, property, [&](bool value) { flag = value ? 1 : 0; });
}

std::string_view FaceName(const LOGFONTA& lf) {
    return {lf.lfFaceName, ::strnlen(lf.lfFaceName, sizeof lf.lfFaceName)};
}

}  // namespace

int OV_Font::DispatchToFont(IFontDisp* disp, LOGFONTA* lf) {
    if (!disp || !lf) return 0;
    Read<CStringA>(*disp, kFontName, [&](const CStringA& name) {
        std::memset(lf->lfFaceName, 0, sizeof lf->lfFaceName);
        std::memcpy(lf->lfFaceName, name.GetString(), ::strnlen(name.GetString(), sizeof lf->lfFaceName - 1));
    });
    Read<std::int64_t>(*disp, kFontSize, [&](std::int64_t size) {
        const auto points = static_cast<std::int32_t>(static_cast<std::uint64_t>(size / kUnitsPerPoint));
        lf->lfHeight = -brindle::MulDiv(points, brindle::CurrentScreen().DotsPerInchY(), kPointsPerInch);
    });
    ReadFlag(*disp, kFontItalic, lf->lfItalic);
    ReadFlag(*disp, kFontUnderline, lf->lfUnderline);
    ReadFlag(*disp, kFontStrikethrough, lf->lfStrikeOut);
    Read<std::int16_t>(*disp, kFontWeight, [&](std::int16_t weight) { lf->lfWeight = weight; });
    Read<std::int16_t>(*disp, kFontCharset, [&](std::int16_t charset) {
        lf->lfCharSet = static_cast<std::uint8_t>(charset & 0xFF);
    });
    return 1;
}

IFontDisp* OV_Font::FontToDispatch(const LOGFONTA* lf) {
    if (!lf) return nullptr;
    IFontDisp* font = CreateFontDisp({"MS Sans Serif", 12 * kUnitsPerPoint, 700, 0, false, false, false});
    if (!font) return nullptr;
    const std::int64_t points = std::abs(
        std::int64_t{brindle::MulDiv(lf->lfHeight, kPointsPerInch, brindle::CurrentScreen().DotsPerInchY())});
    font->PutProperty(kFontName, CStringA(FaceName(*lf)));
    font->PutProperty(kFontSize, points * kUnitsPerPoint + kQuarterPoint);
    font->PutProperty(kFontItalic, lf->lfItalic != 0);
    font->PutProperty(kFontUnderline, lf->lfUnderline != 0);
    font->PutProperty(kFontStrikethrough, lf->lfStrikeOut != 0);
    font->PutProperty(kFontWeight, static_cast<std::int16_t>(lf->lfWeight));
    font->PutProperty(kFontCharset, static_cast<std::int16_t>(lf->lfCharSet));
    return font;
}
