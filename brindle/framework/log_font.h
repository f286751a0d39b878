// LOGFONTA: a font as callers describe it. A negative height is the height of the characters, a positive one that of
// the line, 0 a default; escapement and orientation are tenths of a degree, counter-clockwise from the right. The face
// name is bytes in the ANSI code page with a zero behind them.
#pragma once

#include <cstdint>

struct LOGFONTA {
    std::int32_t lfHeight;
    std::int32_t lfWidth;
    std::int32_t lfEscapement;
    std::int32_t lfOrientation;
    std::int32_t lfWeight;  // 0: a default, 400 normal, 700 bold
    std::uint8_t lfItalic;  // this and the next two: 0 or any other value
    std::uint8_t lfUnderline;
    std::uint8_t lfStrikeOut;
    std::uint8_t lfCharSet;
    std::uint8_t lfOutPrecision;
    std::uint8_t lfClipPrecision;
    std::uint8_t lfQuality;
    std::uint8_t lfPitchAndFamily;
    char lfFaceName[32];
};
