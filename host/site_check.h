// CheckPaths: reads sites, behaviour lists, variables and recordings without running them and reports
// everything that is wrong in them.
#pragma once

#include <string>
#include <vector>

#include "host/problem.h"
#include "host/site_plan.h"

namespace brindle::host {

struct CheckReport {
    Problems problems;  // in the order of the paths, then of the files of a site
    Problems unopened;  // paths that cannot be read at all
    std::size_t files = 0;
};

// Appends what is wrong in one file of the site (its variables, behaviours, macros, skin or map): all that a check of
// the site would report of that file.
void CheckFileOfSite(const SitePlan& plan, const std::string& path, Problems& problems);

// A path is the folder of a site, an XML file (its root says what it is), or a recording (".jsonl").
// Behaviour lists that are given alone see the variables of the variables files given with them.
// RegisterHostTypes comes first.
CheckReport CheckPaths(const std::vector<std::string>& paths);

}  // namespace brindle::host
