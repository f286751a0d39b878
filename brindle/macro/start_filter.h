// IStartFilter: lets a host decide whether a program may be started.
//
// Fields are filled in before a line is split into arguments, so a text from a device that holds a quote or a ";"
// changes what the line means. A filter sees the line as it was written beside what it has become.
// Thread: the one that starts programs (the user interface's).
#pragma once

#include <string>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

// What is about to be started; valid during the call only.
struct ProgramStart {
    const char* program;                        // as the line names it; there need not be one
    const std::vector<std::string>& arguments;  // what it would get
    const char* command;                        // the line after expansion
    const char* line;  // the line before: fields, references and search paths as written
};

class BRINDLE_API IStartFilter {
  public:
    // True: start it. False: do not; `reason` then stands in the log line in place of the result's name, and the
    // start answers 5 (access denied).
    virtual bool Allow(const ProgramStart& start, CStringA& reason) = 0;

  protected:
    ~IStartFilter();  // never destroyed through this interface
};

// Installs the filter (not owned; null: everything may start) and returns the one before.
BRINDLE_API IStartFilter* RegisterStartFilter(IStartFilter* filter) noexcept;
