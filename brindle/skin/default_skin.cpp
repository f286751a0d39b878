// The built-in skin, one line of 945 characters. Kept: the blanks before some "/>" belong to it; its length is known
// to hosts. Tests: ov_skin_test.cpp.
#include "brindle/skin/default_skin.h"

namespace brindle {
namespace {

constexpr const char kText[] =
    R"(<?xml version="1.0"?>)"
    R"(<skin id="OrvaneDefaultSkin" name="OrvaneDefaultSkin">)"
    R"(<pressed>)"
    R"(<mark colour="#ffffff" thickness="2" />)"
    R"(<radiobox bordersize="2" bordercolour="#ffffff" fillstyle="1" fillcoloura="#cccccc")"
    R"( fillcolourb="#808080" />)"
    R"(</pressed>)"
    R"(<default>)"
    R"(<frame top="50" left="0" bottom="100" right="100" fitpicture="1" sizeboxestoframe="1")"
    R"( textOnLeft="0" />)"
    R"(<radiobox bordersize="2" bordercolour="#ffffff" fillstyle="1" fillcoloura="#d4d4d4")"
    R"( fillcolourb="#888888" />)"
    R"(<radiobox_label x="0" y="0" />)"
    R"(<button bordersize="2" bordercolour="#000000" fillstyle="2" fillcoloura="#595959")"
    R"( fillcolourb="#595959" pictureaspectlock="0"/>)"
    R"(<button_label x="0" y="0"/>)"
    R"(<general clocktype="0"/>)"
    R"(<TimeFont1 lfCharSet="0" lfClipPrecision="2" lfEscapement="0" lfFaceName="Arial" lfHeight="-13")"
    R"( lfItalic="0" lfOrientation="0" lfOutPrecision="3" lfPitchAndFamily="34" lfQuality="1")"
    R"( lfStrikeOut="0" lfUnderline="0" lfWeight="400" lfWidth="0" colour="#000000"/>)"
    R"(</default>)"
    R"(</skin>)";

}  // namespace

const char* g_defaultSkin = kText;

}  // namespace brindle
