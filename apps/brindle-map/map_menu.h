// MapMenu: the context menu of a map's window: what can be done with the object under the mouse, or with the one that
// has the focus, and with the whole map. It opens by the right button, by the menu key and by Shift+F10. Shortcuts work
// without opening it.
//
//   menu.Add({"&Settings...", QKeySequence("Ctrl+,"), MapMenuEntry::kMap, {}, [&](const MapPlace&) { ... }});
//   menu.Add({"&Actions...", {}, MapMenuEntry::kObject, [&](const MapPlace& place) { return !place.object.empty(); },
//             [&](const MapPlace& place) { EditActions(place.object); }});
//
// A handler is called when the menu has closed, within a wait of the run: it may open dialogs, behind which the run
// goes on.
// Thread: the user interface's.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QPoint>
#include <QtGui/QKeySequence>

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "host/map_view.h"

class QAction;
class QMenu;

namespace brindle::map {

class MapWindow;

// What an entry is used on.
struct MapPlace {
    std::string object;                   // of site.ini; empty: none
    std::string caption;                  // what people call it
    std::optional<std::size_t> target;    // of the view's targets, when it can be pressed
    std::optional<std::uint32_t> device;  // the packed address it stands for
};

struct MapMenuEntry {
    enum Scope { kObject, kMap };

    QString text;  // "&" before its letter
    QKeySequence shortcut;
    Scope scope = kMap;
    // Whether it can be used; else it is shown grey. Empty: always. Entries of kObject are only there where there is
    // something on the map.
    std::function<bool(const MapPlace&)> applies;
    std::function<void(const MapPlace&)> run;
};

class MapMenu final : public QObject {
  public:
    // The window is borrowed and must outlive the menu. Entries of the window itself are there: press, close.
    explicit MapMenu(MapWindow& window);
    ~MapMenu() override;

    // At the end of its scope's entries.
    void Add(MapMenuEntry entry);

  protected:
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    struct Item {
        MapMenuEntry entry;
        QAction* shortcut = nullptr;  // the window's; null: none
    };
    void AddOwnEntries();
    void Show(const MapPlace& place, const QPoint& global);
    void AddEntries(QMenu& menu, MapMenuEntry::Scope scope, const MapPlace& place);
    static bool Applies(const MapMenuEntry& entry, const MapPlace& place);
    MapPlace PlaceOf(const host::MapSubject& subject, std::optional<std::size_t> target) const;
    MapPlace PlaceAt(const QPoint& inWindow) const;
    MapPlace PlaceOfFocus() const;
    QPoint MiddleOf(const MapPlace& place) const;

    MapWindow& m_window;
    std::deque<Item> m_items;  // in the order they came; they stay where they are
};

}  // namespace brindle::map
