// One guarded parse by libxml2: UTF-8 in, a tree out, under the limits of xml_dom.h.
#pragma once

#include <libxml/tree.h>

#include <string_view>
#include <vector>

#include "brindle/framework/result.h"
#include "brindle/platform/xml_dom.h"

namespace brindle {

// Parses UTF-8 whatever encoding it declares. On success `document` is the caller's (xmlFreeDoc), else null.
// With `places`, every element's `_private` is 1 plus the index of its place there (0 for elements out of
// entities).
Result ParseByLibxml2(std::string_view utf8, std::vector<XmlPosition>* places, xmlDoc*& document);

}  // namespace brindle
