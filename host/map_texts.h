// MapTexts: fills the fields of a map's texts, as those of actions are filled: from what is last known of a device, or
// from one report. A data interface that answers "#" fields is registered while a run goes on. Thread: the run's.
#pragma once

#include <brindle/framework/string_a.h>

#include <cstdint>
#include <optional>

#include "host/site.h"

namespace brindle::host {

// What the "%" fields stand for.
struct MapFields {
    std::optional<std::uint32_t> device;  // packed address
    CStringA caption;
    CStringA text;
    CStringA help;
    CStringA r;
    int status = 0;
    int n = -1;
};

class MapTexts {
  public:
    // The site is borrowed.
    explicit MapTexts(const Site& site) : m_site(site) {}

    // Of the device (none: no address), else of the object (may be null).
    MapFields Fields(std::optional<std::uint32_t> device, const SiteObject* object) const;
    // The text with its fields and the variables of the object, else of the site, filled in.
    CStringA Fill(const CStringA& text, const MapFields& fields, const SiteObject* object) const;
    // Whether the text holds a field of the present time.
    static bool TellsTime(const CStringA& text) noexcept;

  private:
    const Site& m_site;
};

}  // namespace brindle::host
