// LibraryInfo: what a report on this library should say: version, backend, code page and limits. Thread: any.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "brindle/framework/export.h"

namespace brindle {

// A service and what stands behind it.
struct LibraryPart {
    std::string service;  // "XML", "code page" ...
    std::string library;  // what stands behind it
    std::string version;  // of the library that is loaded; may be empty
};

// A limit on input.
struct LibraryLimit {
    std::string name;  // "XML document"
    std::uint64_t value;
    std::string unit;  // "bytes"
};

struct LibraryInfo {
    std::string version;   // "1.0.0"
    std::string compiler;  // that built the library
    std::string backend;   // "linux"
    std::string system;    // the operating system with its version
    unsigned codePage;     // the selected one
    std::vector<LibraryPart> parts;
    std::vector<LibraryLimit> limits;  // what input is refused, or left as it is, beyond
};

// As things are now: with the code page in force.
BRINDLE_API LibraryInfo DescribeLibrary();

}  // namespace brindle
