// MapItem: a panel, label, clock, button or picture of a map.
#pragma once

#include <brindle/widgets/button.h>
#include <brindle/widgets/rectangle.h>

#include <memory>

#include "host/event_line.h"
#include "host/map_part.h"

namespace brindle::host {

class MapItem final : public MapPart {
  public:
    // Pictures are seen from the folder; one that cannot be loaded is left out.
    MapItem(MapElement element, const SiteObject* object, const std::string& folder);
    ~MapItem() override;

    void Place(double scale) override;
    bool Update(const MapScene& scene) override;
    void Draw(CDC& dc, double scale) override;
    CRect Bounds() const noexcept override;
    CRect Painted() const noexcept override;

    // What people who do not see it call it.
    CStringA Name() const;
    // Null unless it is a button.
    OV::Button* Button() const noexcept { return m_button; }
    struct Picture {
        std::string file;  // path
        OV::Button::ImageTypeEnum type;
    };
    const std::vector<Picture>& Pictures() const noexcept { return m_pictures; }
    bool IsPressedIn() const noexcept { return m_pressedIn; }
    // The event that a press is: of a toggle the position after it.
    EventLine Press() const;
    // Takes over the position that an event reports, if it is one of this button.
    bool TakePress(const EventLine& event);

  private:
    struct Shown {
        CStringA text;
        BodyLook look;
        bool pressedIn = false;

        friend bool operator==(const Shown&, const Shown&) = default;
    };
    BodyLook LookFor(const MapScene& scene, const MapFields& fields) const;
    void Make();
    void LoadPictures(const std::string& folder);
    void Apply(const Shown& shown);

    std::unique_ptr<OV::Text> m_widget;
    OV::Button* m_button = nullptr;    // m_widget, when it is one
    OV::Rectangle* m_panel = nullptr;  // likewise
    std::vector<Picture> m_pictures;
    MapNotes m_notes;
    Shown m_shown;
    bool m_isShown = false;
    bool m_pressedIn = false;  // the position of a toggle
    int m_margin = 0;          // how far the outline reaches beyond the bounds
};

}  // namespace brindle::host
