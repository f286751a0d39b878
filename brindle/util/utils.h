// Orvane::Utils: the small conversions every host shares: line breaks, times, UTF-8, numbers and dates as texts,
// file names, paths with a date in them, hosts with ports.
//
// Texts are bytes in the ANSI code page. Time and time zone come from the clock service, words from the C locale.
// Operations that change a text in place take any text, also an empty one. Thread: any.
#pragma once

#include <cstdint>

#include "brindle/framework/export.h"
#include "brindle/framework/file_time.h"
#include "brindle/framework/string_a.h"

namespace Orvane {

class BRINDLE_API Utils {
  public:
    // Makes every line feed a carriage return and a line feed; carriage returns directly before a line feed are
    // dropped first, however many there are.
    static void CorrectLineBreaks(CStringA& s);

    // Seconds since 1970-01-01 UTC, cut towards zero. `time` must not be null and stays the caller's.
    static std::int64_t FileTimeToUnixTime(const FILETIME* time);
    // The local wall-clock time, read as if it were UTC, in seconds since 1970; 32 bits. Throws
    // std::invalid_argument when the clock cannot tell it.
    static unsigned long GetLocalTime32();
    // `t` (seconds since 1970) broken down as UTC and laid out by strftime; a null format is
    // "%a %b %d %H:%M:%S %Y". Empty when it would be longer than 127 characters or the format is unknown. Throws
    // std::invalid_argument when `t` has more than 32 bits.
    // Kept: %z and %Z are the local zone outside daylight saving, although the fields are UTC.
    static CStringA GetTimeString32(unsigned long t, const char* format);
    // True when the text is not empty and is one decimal number with an optional sign; digits without end count,
    // too.
    static bool IsInteger(const CStringA& s);
    // Reads year, month, day, hour, minute and second of "2024-02-10T10:00:00Z" as scanf's "%d" reads them: any
    // number of digits, and what follows the second is not looked at. False, `t` unchanged, unless all six are
    // there. The fields count on (30 February is 1 or 2 March). `t` is seconds since 1970-01-01 UTC, or -1 when
    // the moment lies before 1970 or behind the year 3000; the result is true then, too.
    // Kept: "Z" notwithstanding, the time is local and without daylight saving.
    static bool ParseDateTimeString(const CStringA& s, std::int64_t& t);

    // Replaces : | ? " < > * in the file name behind the last "\" or "/" by "_".
    // Kept: a bare name without a separator, and a name of such characters alone, stay as they are.
    static void ReplaceInvalidCharsInFileName(CStringA& path);
    // `path` laid out by strftime with the local time; as it is when a "%" in it begins no conversion (one of
    // aAbBcCdDHIjmMpSUwWxXyYzZ%). Empty when the result would be longer than 127 characters. Throws as
    // GetLocalTime32 does.
    // Kept: the second "%" of "%%" must begin a conversion too, so "100%%" comes back as it is.
    static CStringA ResolveTimebasedPath(const CStringA& path);
    // Takes "port@host", "host@port" or "host:port" apart at the first "@", else at the first ":". False, the
    // outputs unchanged, when the text has neither. A port that is no number is 0, one too large saturates.
    static bool SplitAddressFromPort(const CStringA& s, CStringA& address, int& port);

    // Removes or replaces characters in place, by the rules of MyCharReplacer. Returns how many.
    static int StripCharacters(CStringA& s, const CStringA& chars, char replacement, bool stripControls,
                               char controlReplacement, const CStringA& keepControls);

    // Between UTF-8 and the code page. `out` is `in` where that cannot be done without loss: text that is no
    // UTF-8, a character the code page has not, a byte that is no character. `out` may be `in`.
    static void FromUTF8(const CStringA& in, CStringA& out);
    static void ToUTF8(const CStringA& in, CStringA& out);

    // Removes the characters at the end that are in the set; every such character at the end.
    static void TrimRight(CStringA& s, const CStringA& set);
    static void TrimRight(CStringA& s, char c);

  private:
    Utils();
    ~Utils();
};

}  // namespace Orvane
