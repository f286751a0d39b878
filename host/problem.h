// Problem: one thing that is wrong with a file of a site, and where.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::host {

struct Problem {
    std::string file;          // as the host path was given
    std::uint32_t line = 0;    // from 1; 0: the file as a whole
    std::uint32_t column = 0;  // from 1; 0: the line as a whole
    std::string text;          // what is wrong, in bytes of the ANSI code page
    bool warning = false;      // works, but a person should know

    // "FILE:LINE:COLUMN", the unknown parts left out.
    std::string Place() const {
        std::string place = file;
        if (line) place += ":" + std::to_string(line);
        if (line && column) place += ":" + std::to_string(column);
        return place;
    }
};

using Problems = std::vector<Problem>;

}  // namespace brindle::host
