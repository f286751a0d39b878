// Arbitrary bytes as a map: whatever comes out keeps the limits, and every attribute's text reads back as itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "host/map_document.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void ReadBack(const brindle::host::AttributeTable& table) {
    for (const brindle::host::Attribute& attribute : table) {
        const std::string text = attribute.text();
        if (text.empty()) continue;
        Require(attribute.parse(text).empty());
        Require(attribute.text() == text);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brindle::host;
    MapDocument map;
    Problems problems;
    if (!ReadMapText(std::string(reinterpret_cast<const char*>(data), size), "map.xml", map, problems)) {
        Require(!problems.empty());
        return 0;
    }
    Require(map.width > 0 && map.width <= MapElement::kFarthest && map.height > 0);
    Require(map.elements.size() <= MapDocument::kMostElements);
    ReadBack(map.Attributes());
    for (MapElement& element : map.elements) {
        Require(element.width > 0 && element.height > 0 && element.notes.size() <= MapDocument::kMostNotes);
        ReadBack(element.Attributes());
        for (MapNote& note : element.notes) ReadBack(note.Attributes());
    }
    return 0;
}
