// CheckMap: everything that is wrong in a map and in what it asks for: what reading it would pass over, objects,
// devices and fields that the site does not have, pictures that are missing.
#pragma once

#include <string>

#include "host/problem.h"
#include "host/site_plan.h"
#include "host/text_check.h"

namespace brindle::host {

struct MapSurroundings {
    const SitePlan* plan = nullptr;  // null: of no site; objects, devices and pictures are not looked for
    TextSurroundings texts;          // the site's; an element of an object also sees that object's variables
};

// Appends the problems, each at the element it stands in.
void CheckMap(const std::string& path, const MapSurroundings& surroundings, Problems& problems);

}  // namespace brindle::host
