// The XML DOM's slot.
#include "brindle/platform/xml_dom.h"

#include "brindle/platform/service.h"

namespace brindle {
namespace {
constinit ServiceSlot<XmlDom> g_xmlDom;
}

XmlDom& CurrentXmlDom() noexcept {
    return g_xmlDom.GetOr(BackendXmlDom());
}
XmlDom* SetXmlDom(XmlDom* service) noexcept {
    return g_xmlDom.Set(service);
}

}  // namespace brindle
