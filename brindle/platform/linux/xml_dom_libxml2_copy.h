// Copies of elements with texts replaced; the part of XmlDocument::AppendCopy that knows libxml2.
#pragma once

#include <libxml/tree.h>

#include "brindle/platform/xml_dom.h"

namespace brindle {

// Appends a copy of `source` with everything in it to `parent`, a node of `document`. Returns the copy.
xmlNode* AppendCopyByLibxml2(xmlDoc* document, xmlNode* parent, const xmlNode* source,
                             const XmlReplacements& replacements);

}  // namespace brindle
