// See create_items.h. Tests: command_create_test.cpp.
#include "apps/brindle/create_items.h"

#include "host/child_sections.h"

namespace brindle::tool {
namespace {

void VisitList(XMLReader& reader, std::size_t behaviour, bool isTrigger, const ItemVisit& visit) {
    if (!reader.EnterSection(isTrigger ? "TriggerList" : "ActionList", true)) return;
    host::ForEachChild(reader, [&](const CStringA& name) { visit({behaviour, isTrigger, name}, reader); });
    reader.CloseSection();
}

}  // namespace

std::size_t ForEachItem(XMLReader& reader, const ItemVisit& visit) {
    std::size_t behaviours = 0;
    while (reader.EnterSection("Behaviour", false)) {
        ++behaviours;
        VisitList(reader, behaviours, true, visit);
        VisitList(reader, behaviours, false, visit);
        reader.CloseSection();
    }
    return behaviours;
}

}  // namespace brindle::tool
