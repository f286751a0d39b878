// MapDocument: what a map.xml says: the size and ground of the map and the elements on it, back to front. The file is
// hostile input: its size, depth and the number of its elements are limited.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/map_element.h"
#include "host/problem.h"

namespace brindle::host {

struct MapDocument {
    static constexpr std::size_t kMostElements = 10'000;
    static constexpr std::size_t kMostNotes = 16;  // of one element

    AttributeTable Attributes();

    int width = 0;
    int height = 0;
    CStringA title;
    MapColour colour{0x000000};
    MapColour secondColour;  // at the bottom; none: one colour
    MapColour textColour{0xFFFFFF};
    CStringA picture;  // fills the ground
    int preview = 0;   // seconds of the recording after which a picture of the map is taken; 0: its end
    std::vector<MapElement> elements;
};

// Reads the file at a host path. False, `map` unspecified, when there is no map to show: the file cannot be read,
// is no map, or says no size. Whatever else is wrong is a problem too, and that part is left out or keeps its default.
bool ReadMapDocument(const std::string& path, MapDocument& map, Problems& problems);
// The same from a text in the ANSI code page, which problems call `name`.
bool ReadMapText(const std::string& text, const std::string& name, MapDocument& map, Problems& problems);

}  // namespace brindle::host
