// AttributeIndex: finds and adds attributes of an element that is being written in constant time, where libxml2
// walks the whole list for each.
#pragma once

#include <libxml/tree.h>

#include <string>
#include <string_view>
#include <unordered_map>

namespace brindle {

// Of one document. Attributes of its elements are added through it alone, and none is removed.
class AttributeIndex {
  public:
    // The first attribute of that name as written (prefix:local), or null.
    xmlAttr* Find(const xmlNode* element, std::string_view name);
    // A new attribute at the end, without a value; Find has just found none of that name, which is prefix:local as
    // `ns` and `local` say. Null when memory is out.
    xmlAttr* Append(xmlNode* element, std::string_view name, xmlNs* ns, const xmlChar* local);
    // The nodes are no more.
    void Clear();

  private:
    void Index(const xmlNode* element);

    const xmlNode* m_element = nullptr;  // the one indexed: the last that had a long list
    xmlAttr* m_last = nullptr;
    std::unordered_map<std::string, xmlAttr*> m_byName;
};

}  // namespace brindle
