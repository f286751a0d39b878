// SitePlan: what site.ini says: which files a site is made of and which objects it has. Reading it opens no
// other file, so that a check can go on with every part by itself.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/settings/host_type.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/problem.h"

namespace brindle::host {

struct ObjectPlan {
    std::string name;
    std::uint32_t line = 0;  // of its section
    eHostType host = eHostMapObject;
    CAddressOv address;  // all parts open when none is given
    std::string caption;
    std::string behaviours;  // path
    std::string variables;   // path; empty: none of its own
};

struct SitePlan {
    std::string folder;
    std::string file;  // site.ini's path
    std::string name;
    std::int64_t start = 0;  // of a fast run, seconds since 1970-01-01 UTC
    // Paths; empty: the site has none.
    std::string variables;
    std::string devices;
    std::string macros;
    std::string skin;
    std::string map;
    std::string recording;
    bool startPrograms = true;   // false: commands are only logged
    bool checkArguments = true;  // refuse a start whose fields changed the number of its arguments
    struct Drive {
        char letter;
        std::string folder;  // path
    };
    std::vector<Drive> drives;
    std::vector<ObjectPlan> objects;
};

// Reads the site.ini of the folder. False when it cannot be read at all. Problems are appended; the plan then
// holds what could be understood.
bool ReadSitePlan(const std::string& folder, SitePlan& plan, Problems& problems);
// Maps the drive letters of the plan, for the whole process: host paths of its files may then begin with them.
void MapDrives(const SitePlan& plan);

}  // namespace brindle::host
