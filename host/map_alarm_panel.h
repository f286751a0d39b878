// MapAlarmPanel: the list of alarms on a map: a scrolling column of rows, one for each entry that reaches the panel's
// limit. A press on a row acknowledges its entry.
#pragma once

#include <brindle/widgets/button.h>
#include <brindle/widgets/scroll_panel.h>
#include <brindle/widgets/widget_list.h>

#include <optional>
#include <vector>

#include "host/map_part.h"

namespace brindle::host {

class MapAlarmPanel final : public MapPart {
  public:
    MapAlarmPanel(MapElement element, const SiteObject* object);
    ~MapAlarmPanel() override;

    void Place(double scale) override;
    bool Update(const MapScene& scene) override;
    void Draw(CDC& dc, double scale) override;
    CRect Bounds() const noexcept override { return m_bounds; }

    // The texts of a new entry.
    void Describe(MapAlarm& alarm, const MapScene& scene, const MapFields& report) const;

    // The mouse, at a point inside or, between down and up, anywhere. True when it is to be drawn anew.
    bool OnMouseDown(CPoint point);
    bool OnMouseMove(CPoint point);
    // The device whose row was pressed and let go; nothing otherwise.
    std::optional<std::uint32_t> OnMouseUp(CPoint point);

    // The rows, from top to bottom, for those who do not use the mouse.
    std::size_t RowCount() const noexcept { return m_rows.size(); }
    std::uint32_t RowDevice(std::size_t row) const noexcept { return m_rows[row].device; }
    CStringA RowName(std::size_t row) const;
    bool IsRowAcknowledged(std::size_t row) const noexcept { return m_rows[row].acknowledged; }
    // Where the row is; cut to the panel, and empty when it is scrolled out.
    CRect RowBounds(std::size_t row) const noexcept;
    // Scrolls until the row is inside, as presses on the arrows do. True when something moved.
    bool ScrollTo(std::size_t row);

  private:
    class Row;
    struct Shown {
        std::uint32_t device = 0;
        bool acknowledged = false;
        BodyLook look;
        CStringA text;
        std::vector<CStringA> notes;

        friend bool operator==(const Shown&, const Shown&) = default;
    };
    bool Scrolls() const noexcept;
    Row* RowAt(std::size_t row) const noexcept;
    BodyLook LookFor(const MapAlarm& alarm, const MapScene& scene) const;
    void ShowRows(std::vector<Shown> rows);
    void PlaceRows();
    void MoveRows(int by);

    CRect m_bounds;
    OV::List* m_list;  // the panel's
    OV::ScrollPanel m_panel;
    std::vector<Shown> m_rows;
    double m_scale = 1;
    std::optional<std::uint32_t> m_pressed;  // the device of the row
};

}  // namespace brindle::host
