// See xml_dom_libxml2_select.h. A plain name is answered without XPath: it is what nearly every caller
// passes, and it finds a root in a default namespace too, which XPath would not.
#include "brindle/platform/linux/xml_dom_libxml2_select.h"

#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>

#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "brindle/platform/xml_dom_text.h"

namespace brindle {
namespace {

constexpr unsigned long kMaxSteps = 50'000'000;  // of libxml2's own count: a second or so

void Ignore(void*, xmlErrorPtr) {}

const xmlChar* Chars(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

// libxml2 prints a note of its own, past every handler, for a function it does not know.
void RefuseFunction(xmlXPathParserContextPtr context, int) {
    xmlXPathErr(context, XPATH_UNKNOWN_FUNC_ERROR);
}
xmlXPathFunction FindFunction(void* data, const xmlChar* name, const xmlChar* ns) {
    const auto* context = static_cast<const xmlXPathContext*>(data);
    void* known = xmlHashLookup2(context->funcHash, name, ns);
    return known ? reinterpret_cast<xmlXPathFunction>(known) : RefuseFunction;
}

// And so it does for a prefix of a function or variable that is not declared (neither exists here, so an
// expression with a variable or a prefixed function is invalid anyhow), and for a character that is not
// XML's.
bool UsesVariableOrPrefixedFunction(std::string_view xpath) {
    bool prefixed = false;
    for (std::size_t at = 0; at < xpath.size(); ++at) {
        const char c = xpath[at];
        if (c == '"' || c == '\'') {
            at = xpath.find(c, at + 1);
            if (at == std::string_view::npos) return false;  // not closed: invalid, says libxml2
            prefixed = false;
        } else if (c == '$' || (c == '(' && prefixed)) {
            return true;
        } else if (c == ':') {
            prefixed = at + 1 < xpath.size() && xpath[at + 1] != ':' && (at == 0 || xpath[at - 1] != ':');
        } else if (std::string_view("/[]@,|=()<>!+*").find(c) != std::string_view::npos) {
            prefixed = false;
        }
    }
    return false;
}

bool WouldBePrinted(std::string_view xpath) {
    std::string ignored;
    return UsesVariableOrPrefixedFunction(xpath) || !AppendXmlText(xpath, XmlTextKind::kVerbatim, ignored);
}

bool IsPlainName(std::string_view text) {
    return !text.empty() && text.find_first_of(" \t\r\n/[]@,|=()<>!+*$\"'.") == std::string_view::npos &&
           text.find("::") == std::string_view::npos;
}

bool HasName(const xmlNode* element, std::string_view name) {
    if (element->ns && element->ns->prefix) {
        const std::string_view prefix = reinterpret_cast<const char*>(element->ns->prefix);
        if (!name.starts_with(prefix) || name.size() <= prefix.size() || name[prefix.size()] != ':')
            return false;
        name.remove_prefix(prefix.size() + 1);
    }
    return name == reinterpret_cast<const char*>(element->name);
}

xmlNode* FirstInDocument(xmlXPathObject* found) {
    if (!found || found->type != XPATH_NODESET || !found->nodesetval) return nullptr;
    xmlXPathNodeSetSort(found->nodesetval);
    xmlNode* first = found->nodesetval->nodeNr > 0 ? found->nodesetval->nodeTab[0] : nullptr;
    return first && first->type == XML_ELEMENT_NODE ? first : nullptr;
}

}  // namespace

xmlNode* SelectSingleByLibxml2(xmlDoc* document, const char* xpath) {
    xmlNode* root = xmlDocGetRootElement(document);
    if (root && HasName(root, xpath)) return root;
    if (IsPlainName(xpath) || WouldBePrinted(xpath)) return nullptr;
    const std::unique_ptr<xmlXPathContext, decltype(&xmlXPathFreeContext)> context(
        xmlXPathNewContext(document), &xmlXPathFreeContext);
    if (!context) throw std::bad_alloc();
    context->node = reinterpret_cast<xmlNode*>(document);
    context->error = Ignore;
    context->opLimit = kMaxSteps;
    xmlXPathRegisterFuncLookup(context.get(), FindFunction, context.get());
    for (const xmlNs* ns = root ? root->nsDef : nullptr; ns; ns = ns->next)
        if (ns->prefix) xmlXPathRegisterNs(context.get(), ns->prefix, ns->href);
    const std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> found(
        xmlXPathEvalExpression(Chars(xpath), context.get()), &xmlXPathFreeObject);
    return FirstInDocument(found.get());
}

}  // namespace brindle
