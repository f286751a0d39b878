// MapPart: one element on the map, alive: its widgets, what they show, where they are. Thread: the user interface's.
#pragma once

#include <brindle/widgets/text.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "host/map_scene.h"

namespace brindle::host {

class MapPart {
  public:
    MapPart(const MapPart&) = delete;
    MapPart& operator=(const MapPart&) = delete;
    virtual ~MapPart() = default;

    const MapElement& Element() const noexcept { return m_element; }
    // Whether what changed may show here.
    bool DependsOn(const MapChanges& changes) const;

    // Puts the widgets where the scale has them.
    virtual void Place(double scale) = 0;
    // Takes over what there is to show; true when that looks different from before.
    virtual bool Update(const MapScene& scene) = 0;
    virtual void Draw(CDC& dc, double scale) = 0;
    // Where it is, and where drawing it may leave marks.
    virtual CRect Bounds() const noexcept = 0;
    virtual CRect Painted() const noexcept { return Bounds(); }
    // What it stands for: the site's object, or null; the packed address of its device.
    const SiteObject* Object() const noexcept { return m_object; }
    std::optional<std::uint32_t> Device() const noexcept { return m_device; }

  protected:
    // The object that the element names must be the site's, or null.
    MapPart(MapElement element, const SiteObject* object);

  private:
    MapElement m_element;
    const SiteObject* m_object;
    std::optional<std::uint32_t> m_device;
    // What its texts depend on.
    std::set<std::uint32_t> m_devices;
    bool m_time = false;
    bool m_variables = false;
};

// The font of an element's caption; `percent` of its height.
LOGFONTA MapFont(const MapElement& element, int percent = 100);
// The secondary captions of an element, each a text over its whole place.
class MapNotes {
  public:
    explicit MapNotes(const MapElement& element);
    void Place(const CRect& bounds, double scale);
    // True when a text or the colour differs.
    bool Show(const std::vector<CStringA>& texts, std::uint32_t colour);
    void Draw(CDC& dc, double scale);

  private:
    std::vector<OV::Text> m_texts;
    std::uint32_t m_colour = 0;
};
OVDrawing::HorizontalAlignment AlignmentOf(int align) noexcept;
OVDrawing::VerticalAlignment VerticalAlignmentOf(int vertical) noexcept;
OVDrawing::Escapement EscapementOf(int turn) noexcept;

}  // namespace brindle::host
