// MapView: a station's map, alive: what a run reports becomes what the map shows, and presses on it become events. It
// draws on any device context and tells which places are to be drawn anew; a window or a picture is somebody else's.
//
// The host hands it every record of the run (Take), then lets it show them (Refresh), at best once for many; draws the
// places of TakeDirty; and tells it of mouse and keyboard. Coordinates are those of the scaled map, its upper left
// corner at (0, 0). Thread: the user interface's, which is also the run's. "#" fields are answered while a run goes on.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "host/event_line.h"
#include "host/map_alarm_panel.h"
#include "host/map_focus.h"
#include "host/map_item.h"
#include "host/map_motion.h"
#include "host/run_record.h"

namespace brindle::host {

// Something on the map that can be pressed.
struct MapTarget {
    CRect bounds;  // empty: scrolled out of sight
    CStringA name;
    bool stays = false;      // has a pressed position
    bool pressedIn = false;  // ... and is in it
    bool isAlarm = false;    // a row of the list of alarms
    bool unacknowledged = false;
};

// What something on the map stands for.
struct MapSubject {
    const SiteObject* object = nullptr;   // null: none
    std::optional<std::uint32_t> device;  // packed address
};

class MapView {
  public:
    static constexpr double kLeastScale = 0.05;
    static constexpr double kLargestScale = 20;

    // The site is borrowed, the document taken over. `press` receives the events that presses are.
    MapView(const Site& site, MapDocument document, std::function<void(const EventLine&)> press);
    MapView(const MapView&) = delete;
    MapView& operator=(const MapView&) = delete;
    ~MapView();

    // Another document in the place of this one; alarms, positions of toggles and the scale stay.
    void Replace(MapDocument document);
    const MapDocument& Document() const noexcept { return m_document; }

    // Beyond the limits it is the limit.
    void SetScale(double scale);
    double Scale() const noexcept { return m_scale; }
    CSize Size() const noexcept;

    // Something that happened in the run.
    void Take(const RunRecord& record);
    // Begins the other phase of blinking.
    void SetBlink(bool off);
    // Takes over what has happened and the time.
    void Refresh();
    // What is to be drawn anew since the last call; the whole map as one place when everything is.
    std::vector<CRect> TakeDirty();
    bool HasDirty() const noexcept { return !m_dirty.empty(); }
    // Draws what lies in the place, and nothing outside it on a surface that clips.
    void Draw(CDC& dc, const CRect& place);

    // The mouse. Presses count when the button is let go over what it was pressed on.
    void OnMouseMove(CPoint point);
    void OnMouseDown(CPoint point);
    void OnMouseUp(CPoint point);
    void OnMouseLeave();
    // Whether the point can be pressed.
    bool IsClickable(CPoint point) const;

    // The keyboard, and those who do not see the map. The order is that of the file, alarms in theirs.
    std::vector<MapTarget> Targets() const;
    std::optional<std::size_t> Focus() const;
    void SetFocus(std::optional<std::size_t> target);
    void MoveFocus(MapDirection direction);
    void Press(std::size_t target);
    // The target at the point.
    std::optional<std::size_t> TargetAt(CPoint point) const;
    // Of the topmost thing there that stands for something; of a row of alarms its device.
    MapSubject SubjectAt(CPoint point) const;
    MapSubject SubjectOf(std::size_t target) const;

    const MapAlarms& Alarms() const noexcept { return m_scene->alarms; }

  private:
    struct Key {  // what a target is, whatever its index
        std::size_t part = 0;
        std::optional<std::uint32_t> device;  // of a row

        friend bool operator==(const Key&, const Key&) = default;
    };
    void MakeParts();
    void AddMotions();
    std::vector<Key> Keys() const;
    MapItem* ItemOf(std::size_t part) const;
    MapAlarmPanel* PanelOf(std::size_t part) const;
    MapTarget TargetOf(const Key& key) const;
    std::optional<std::size_t> RowOf(const Key& key) const;
    std::optional<std::size_t> PartAt(CPoint point) const;

    void TakeEvent(const RunRecord& record);
    void TakeState(std::uint32_t device, const RunRecord& record);
    void TakeOldAlarms();
    void BeginAlarm(const MapFields& report);
    void Acknowledge(std::optional<std::uint32_t> device);
    void PressItem(const MapItem& item);
    void MarkTarget(const std::optional<Key>& key);
    void Mark(const CRect& place);
    void MarkAll();
    void DrawGround(CDC& dc, const CRect& place) const;
    void DrawFocus(CDC& dc, const CRect& place) const;

    const Site& m_site;
    MapDocument m_document;
    std::function<void(const EventLine&)> m_press;
    std::unique_ptr<MapScene> m_scene;
    std::vector<std::unique_ptr<MapPart>> m_parts;
    std::vector<std::unique_ptr<MapMotion>> m_motions;  // of the parts' pictures
    double m_scale = 1;
    MapChanges m_changes;
    std::int64_t m_second = 0;  // of the time that is shown
    std::vector<CRect> m_dirty;
    std::optional<std::size_t> m_over;  // parts
    std::optional<std::size_t> m_pressed;
    std::optional<Key> m_focus;
};

}  // namespace brindle::host
