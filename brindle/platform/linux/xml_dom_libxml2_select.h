// XPath selection on a libxml2 document.
#pragma once

#include <libxml/tree.h>

namespace brindle {

// See XmlDocument::SelectSingle.
xmlNode* SelectSingleByLibxml2(xmlDoc* document, const char* xpath);

}  // namespace brindle
