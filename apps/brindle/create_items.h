// A walk over the triggers and actions of a behaviour list document, unknown ones included.
#pragma once

#include <brindle/xml/xml_reader.h>

#include <cstddef>
#include <functional>

namespace brindle::tool {

struct ListItem {
    std::size_t behaviour;  // its number, from 1
    bool isTrigger;
    CStringA name;  // of its element
};

// Called with the reader in the item's element.
using ItemVisit = std::function<void(const ListItem& item, XMLReader& reader)>;

// The reader stands in "BehaviourList". Returns the number of behaviours.
std::size_t ForEachItem(XMLReader& reader, const ItemVisit& visit);

}  // namespace brindle::tool
