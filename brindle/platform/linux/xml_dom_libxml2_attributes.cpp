// See xml_dom_libxml2_attributes.h. Short lists, nearly all there are, are walked: that is faster than any index.
#include "brindle/platform/linux/xml_dom_libxml2_attributes.h"

#include "brindle/platform/linux/xml_dom_libxml2_tree.h"

namespace brindle {
namespace {

constexpr unsigned kShortList = 32;

bool Equals(const xmlChar* text, std::string_view other) {
    return std::string_view(Chars(text)) == other;
}

bool HasName(const xmlAttr* attribute, std::string_view name) {
    const xmlNs* ns = attribute->ns;
    if (!ns || !ns->prefix) return Equals(attribute->name, name);
    const std::string_view prefix = Chars(ns->prefix);
    return name.size() > prefix.size() && name[prefix.size()] == ':' && name.starts_with(prefix) &&
           Equals(attribute->name, name.substr(prefix.size() + 1));
}

std::string WrittenName(const xmlAttr* attribute) {
    const xmlNs* ns = attribute->ns;
    const std::string local = Chars(attribute->name);
    return ns && ns->prefix ? std::string(Chars(ns->prefix)) + ':' + local : local;
}

}  // namespace

xmlAttr* AttributeIndex::Find(const xmlNode* element, std::string_view name) {
    unsigned walked = 0;
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (HasName(attribute, name)) return attribute;
        if (++walked < kShortList) continue;
        if (element != m_element) Index(element);
        const auto found = m_byName.find(std::string(name));
        return found == m_byName.end() ? nullptr : found->second;
    }
    return nullptr;
}

xmlAttr* AttributeIndex::Append(xmlNode* element, std::string_view name, xmlNs* ns, const xmlChar* local) {
    if (element != m_element) return xmlNewNsProp(element, ns, local, nullptr);
    xmlAttr*& place = m_byName.try_emplace(std::string(name)).first->second;
    xmlAttr* attribute = xmlNewDocProp(element->doc, local, nullptr);
    if (!attribute) {
        Clear();
        return nullptr;
    }
    place = attribute;
    attribute->parent = element;
    attribute->ns = ns;
    attribute->prev = m_last;
    m_last->next = attribute;
    m_last = attribute;
    return attribute;
}

void AttributeIndex::Clear() {
    m_element = nullptr;
    m_byName.clear();
}

void AttributeIndex::Index(const xmlNode* element) {
    Clear();
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        m_byName.try_emplace(WrittenName(attribute), attribute);
        m_last = attribute;
    }
    m_element = element;
}

}  // namespace brindle
