// See xml_dom_libxml2_markup.h. The walk is a loop: a built tree may have any depth.
#include "brindle/platform/linux/xml_dom_libxml2_markup.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "brindle/platform/xml_dom_text.h"

namespace brindle {
namespace {

std::string_view View(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : "";
}

bool AppendName(const xmlNs* ns, const xmlChar* name, std::string& markup) {
    if (ns && ns->prefix) {
        if (!AppendXmlText(View(ns->prefix), XmlTextKind::kVerbatim, markup)) return false;
        markup += ':';
    }
    return AppendXmlText(View(name), XmlTextKind::kVerbatim, markup);
}

bool AppendDeclaration(const xmlNs* ns, std::string& markup) {
    markup += " xmlns";
    if (ns->prefix) markup.append(":").append(View(ns->prefix));
    markup += "=\"";
    if (!AppendXmlText(View(ns->href), XmlTextKind::kAttribute, markup)) return false;
    markup += '"';
    return true;
}

bool AppendAttribute(const xmlAttr* attribute, std::string& markup) {
    markup += ' ';
    if (!AppendName(attribute->ns, attribute->name, markup)) return false;
    markup += "=\"";
    for (const xmlNode* part = attribute->children; part; part = part->next)
        if (!AppendXmlText(View(part->content), XmlTextKind::kAttribute, markup)) return false;
    markup += '"';
    return true;
}

bool AppendStartTag(const xmlNode* element, const std::vector<const xmlNs*>& outside, std::string& markup) {
    markup += '<';
    if (!AppendName(element->ns, element->name, markup)) return false;
    for (const xmlNs* ns : outside)
        if (!AppendDeclaration(ns, markup)) return false;
    for (const xmlNs* ns = element->nsDef; ns; ns = ns->next)
        if (!AppendDeclaration(ns, markup)) return false;
    for (const xmlAttr* attribute = element->properties; attribute; attribute = attribute->next)
        if (!AppendAttribute(attribute, markup)) return false;
    markup += element->children ? ">" : "/>";
    return true;
}

bool AppendLeaf(const xmlNode* node, std::string& markup) {
    const auto wrapped = [&](const char* before, const char* after) {
        markup += before;
        if (!AppendXmlText(View(node->content), XmlTextKind::kVerbatim, markup)) return false;
        markup += after;
        return true;
    };
    switch (node->type) {
        case XML_TEXT_NODE:
            return AppendXmlText(View(node->content), XmlTextKind::kText, markup);
        case XML_CDATA_SECTION_NODE:
            return wrapped("<![CDATA[", "]]>");
        case XML_COMMENT_NODE:
            return wrapped("<!--", "-->");
        case XML_PI_NODE: {
            markup += "<?";
            if (!AppendXmlText(View(node->name), XmlTextKind::kVerbatim, markup)) return false;
            return wrapped(node->content && *node->content ? " " : "", "?>");
        }
        default:
            return true;  // the document type: all it declared is expanded
    }
}

// The next node of the walk below `top` in document order, or null; `ended` is told each element left on the
// way.
template <class Ended>
const xmlNode* Next(const xmlNode* node, const xmlNode* top, Ended ended) {
    if (node->type == XML_ELEMENT_NODE && node->children) return node->children;
    while (node != top) {
        if (node->next) return node->next;
        node = node->parent;
        ended(node);
    }
    return nullptr;
}

}  // namespace

std::vector<const xmlNs*> OutsideNamespaces(const xmlNode* top) {
    std::vector<const xmlNs*> declared;
    for (const xmlNode* outer = top->parent; outer && outer->type == XML_ELEMENT_NODE; outer = outer->parent)
        for (const xmlNs* ns = outer->nsDef; ns; ns = ns->next) declared.push_back(ns);
    std::vector<const xmlNs*> used;
    const auto use = [&](const xmlNs* ns) {
        if (!ns || std::find(used.begin(), used.end(), ns) != used.end()) return;
        if (std::find(declared.begin(), declared.end(), ns) != declared.end()) used.push_back(ns);
    };
    for (const xmlNode* node = top; node && !declared.empty();
         node = Next(node, top, [](const xmlNode*) {})) {
        if (node->type != XML_ELEMENT_NODE) continue;
        use(node->ns);
        for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next)
            use(attribute->ns);
    }
    return used;
}

bool AppendMarkup(const xmlNode* top, std::string& markup) {
    if (top->type != XML_ELEMENT_NODE) return AppendLeaf(top, markup);
    std::vector<const xmlNs*> outside = OutsideNamespaces(top);
    bool good = true;
    const auto endTag = [&](const xmlNode* element) {
        markup += "</";
        good = AppendName(element->ns, element->name, markup) && good;
        markup += '>';
    };
    for (const xmlNode* node = top; node && good; node = Next(node, top, endTag)) {
        good =
            node->type == XML_ELEMENT_NODE ? AppendStartTag(node, outside, markup) : AppendLeaf(node, markup);
        outside.clear();
    }
    return good;
}

}  // namespace brindle
