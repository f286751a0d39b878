// Command-line formatting: fills the placeholders of macro command lines, paths and captions just before use.
//
// "%" fields stand for date, address and the texts of the call; "#name#" and "#address,name#" fields stand for
// values the host's IBrindleData answers.
// Thread: the one that runs commands (the user interface's); the pre-format hook is a plain process-wide slot.
#pragma once

#include "brindle/framework/array.h"
#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

struct FullAddress_t;

// Expands `commandLine` in place. Every pointer may be null and `n` and `q` may be -1: the fields that stand
// for them then stay as typed. In this order:
//   1. the pre-format hook, if one is attached, changes the line;
//   2. if the line now holds a "%": "%%" is set aside; then the date tokens, then the argument fields below
//   are
//      replaced, each everywhere before the next is looked for, so that a replaced text may bring or complete
//      a later field; then each "%%" becomes "%";
//   3. a line that begins with "." gets `path` and "\" put before it;
//   4. if a data interface is registered and the hook left a "#": the "#" fields are answered from left to
//   right.
//
//   Date tokens: %dd% %MM% %yyyy% %ddd% %dddd% %MMM% %MMMM% %z% %H% %m% %s% (local time, English names).
//   Arguments: %n n, %q q, %a address, %N net, %U unit, %P port, %p path, %c caption, %t text, %h help (only
//   when `text` is given), %i status, %j the host's status of the address, %v the colour name of that, %s the
//   colour name of `status`, %r r.
//
// All arguments stay the caller's. Texts end at their first zero byte. A field whose replacement would make the
// line longer than 16 MiB stays as typed. Throws std::invalid_argument when the line holds a "%" and the present
// time cannot be expressed as local time. What the hook or the host's object throws passes through. After any
// exception, memory running out included, the line is what the last complete stage of the four left.
BRINDLE_API void FormatCommandLineEx(CStringA& commandLine, const FullAddress_t* address, const char* path,
                                     const char* caption, const char* text, const char* help, int status,
                                     const char* r, int n, int q);
// The same without r, n and q.
BRINDLE_API void FormatCommandLine(CStringA& commandLine, const FullAddress_t* address, const char* path,
                                   const char* caption, const char* text, const char* help, int status);

// A function that changes a command line before everything else. There is one at a time: AttachPreFormatHook
// installs a hook (null: none) and returns the one it replaces. Whoever attaches keeps that one, calls it if
// it wishes, and puts it back when it is done.
using PreFormatHook = void (*)(CStringA& commandLine);
BRINDLE_API PreFormatHook AttachPreFormatHook(PreFormatHook hook) noexcept;

// 1 when the text holds a "#" and another one behind it, else 0.
BRINDLE_API int ContainsHashField(const CStringA& s) noexcept;
// Appends the packed address, net << 16 | unit << 8 | port, of every "#address,name#" field whose address
// part is one; parts left open count as 0.
//
// Check first that the text has an even number of "#": with an unpaired "#" behind the last complete field
// this call NEVER RETURNS.
BRINDLE_API void ExtractAddressesFromHashFields(const CStringA& s, CDWordArray& out);
