// Programs: starts programs, and opens documents with the desktop's opener. Never through a shell.
//
// A command line names a program and its arguments. The program is the text in quotes, or the text up to the first
// blank that makes a program there is ("C:\my dir\x.exe a" finds "C:\my dir\x.exe"); ".exe" is added where that
// helps. A name with a separator in it is a host path (files.h); any other is looked for in the current directory,
// then along the PATH. The rest becomes arguments by the rules of SplitArguments.
//
// A started program runs in a session of its own, with the default signal handlers, no signal blocked and no
// descriptor but the three standard ones. It is not waited for: one that has ended is taken away at a later Start,
// Open or Reap, and no other child of the process is touched.
//
// Texts are bytes in the code page; programs get them as the system's text. Thread: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "brindle/framework/export.h"

namespace brindle {

// What starting answers: above 32 it succeeded. Hosts know these numbers: do not change them.
enum ProgramCode : int {
    kProgramNoMemory = 0,
    kProgramFailed = 1,  // for another reason
    kProgramNotFound = 2,
    kProgramFolderNotFound = 3,  // a folder of the program's own path is missing
    kProgramAccessDenied = 5,
    kProgramBadFormat = 11,
    kProgramNoOpener = 31,  // nothing opens such documents
    kProgramStarted = 33,
};

// How a command line is understood.
struct ProgramPlan {
    int code = kProgramNotFound;  // kProgramStarted: there is such a program
    std::string program;          // as written, without quotes
    std::string systemPath;       // of the program, when there is one
    std::vector<std::string> arguments;
};

class Programs {
  public:
    // Understands a command line and looks for its program; starts nothing.
    virtual ProgramPlan Plan(std::string_view commandLine) = 0;
    // Starts what was planned and returns its code. Hidden: its standard streams are the null device; else they are
    // this process's own.
    virtual int Start(const ProgramPlan& plan, bool hidden) = 0;
    // Opens a document, folder or address ("https://...") with the desktop's opener, or starts it if it is a
    // program; the text is one name, never split. It runs in `directory` (a host path; unusable: the current one).
    // Waits up to a second for the opener to say that it failed.
    virtual int Open(std::string_view document, std::string_view directory, bool hidden) = 0;
    // Takes away programs that have ended. Cheap when none was started.
    virtual void Reap() = 0;
    // Waits until every program started here has ended.
    virtual void WaitForAll() = 0;

  protected:
    ~Programs() = default;  // never destroyed through this interface
};

// The installed service, or the backend's.
BRINDLE_API Programs& CurrentPrograms() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
BRINDLE_API Programs* SetPrograms(Programs* service) noexcept;

// The arguments of a command line, split at blanks and tabs outside of quotes. In a row of backslashes before a
// quote two stand for one; one left over makes the quote a plain character. Elsewhere a backslash is itself. Two
// quotes within quotes stand for one. A quote that is not closed reaches to the end.
BRINDLE_API std::vector<std::string> SplitArguments(std::string_view text);

// A command line as its program, which ends at its closing quote or the first blank, and the text behind it.
struct ProgramText {
    std::string_view program;
    std::string_view arguments;
};
// Both point into the line.
BRINDLE_API ProgramText SplitProgram(std::string_view commandLine);

}  // namespace brindle
