// MapScene: what the parts of a map show themselves by, and what has changed since they last did.
#pragma once

#include <cstdint>
#include <set>

#include "host/map_alarms.h"
#include "host/map_document.h"
#include "host/map_look.h"
#include "host/map_texts.h"

namespace brindle::host {

struct MapScene {
    MapScene(const Site& mapSite, const MapColour& colour, int alarmsFrom)
        : site(mapSite),
          texts(mapSite),
          look(mapSite.skin),
          alarms(alarmsFrom),
          textColour(colour.Or(0xFFFFFF)) {}

    const Site& site;
    MapTexts texts;
    MapLook look;
    MapAlarms alarms;
    std::uint32_t textColour;
    std::uint32_t groundColour = 0;
    bool blinkOff = false;  // the phase in which what blinks looks plain
};

struct MapChanges {
    bool all = false;
    bool time = false;       // another second
    bool variables = false;  // some variable was set
    bool alarms = false;     // an alarm began, ended or was acknowledged, or the phase of blinking changed
    std::set<std::uint32_t> devices;

    bool Any() const noexcept { return all || time || variables || alarms || !devices.empty(); }
};

// A length of the map at a scale. Neighbours stay neighbours: their common edge is rounded to the same place.
int Scaled(int length, double scale) noexcept;
CRect Scaled(const CRect& place, double scale) noexcept;
// As thick as the scale says, but not nothing.
int ScaledBorder(int border, double scale) noexcept;
bool Meets(const CRect& a, const CRect& b) noexcept;

}  // namespace brindle::host
