// Writes libxml2 nodes as markup, without libxml2's writer (which adds line breaks, turns characters into
// references and prints its errors).
#pragma once

#include <libxml/tree.h>

#include <string>
#include <vector>

namespace brindle {

// Appends the node with everything in it. An element also gets the namespace declarations from outside that
// it or anything in it uses. False, with `markup` half written, when a text holds what XML cannot hold.
bool AppendMarkup(const xmlNode* node, std::string& markup);

// The declarations on the elements around `top` that it or anything in it uses.
std::vector<const xmlNs*> OutsideNamespaces(const xmlNode* top);

}  // namespace brindle
