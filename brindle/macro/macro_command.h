// Macro command lines: "<name>" macros, fields and search paths that end in started programs. Never through a shell.
//
//   [CommandActions]
//   Editor=Text editor,notepad.exe
//   Bell=bell.exe /ring
//
// A line is commands separated by ";". In each the first "<name>" is replaced by the macro's command text: what
// stands behind the first "," of its definition, or all of it. Then fields and search paths are expanded
// (substitute_path.h says what texts of devices can do there), "%H" is taken out (it hides the program: no streams),
// and the program starts (platform/programs.h says how a line becomes program and arguments). What is no program is
// opened as a document or address.
//
// Messages appear through the desktop service, modal to the application; without a desktop they are lines on the
// standard error. The working directory is restored whatever happens, also when the host's own code throws.
// Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"
#include "brindle/framework/window_handle.h"

struct FullAddress_t;

// Runs every command of the line, with `path` (if not empty) as the working directory; returns the code of the last
// one, above 32 when it started, and 0 when there was none. A macro that is not defined gives a warning, and its
// command runs as written. The other arguments are those of FormatCommandLineEx; each pointer may be null.
BRINDLE_API int ExecuteMacroCommandLine(HWND owner, const char* commandLine, const FullAddress_t* address,
                                        const char* path, const char* caption, const char* text,
                                        const char* help, int status, const char* r, int n, int q);

// Starts one program in `directory` (an unusable one is ignored) and returns the code: above 32 it started; 0 out of
// memory, 2 not found, 3 a folder of its path not found, 5 access denied or refused by the start filter, 11 bad
// format, 31 nothing opens such a document. A failure shows an error message, except when the filter refused. The
// host's WriteCommandLog gets one line: command, directory and the result's name or the filter's reason.
BRINDLE_API int ExecuteShellCommand(HWND owner, const char* command, const char* directory);

// A macro or path as one file name: "<name>" becomes its command text ("" when not defined; no message), then the
// first existing candidate of the expansion, else the whole of it, cut to 4,095 bytes.
BRINDLE_API CStringA ExpandMacroFileName(HWND owner, const char* name, const FullAddress_t* address,
                                         const char* path, const char* caption, const char* text,
                                         const char* help, int status, const char* r);
