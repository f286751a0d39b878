// The menu is not run but shown: the window's own loop goes on behind it. Tests: map_menu_test.cpp.
#include "apps/brindle-map/map_menu.h"

#include <brindle/library/host_text.h>

#include <QtGui/QAction>
#include <QtGui/QContextMenuEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenu>

#include <utility>

#include "apps/brindle-map/map_window.h"

namespace brindle::map {
namespace {

QString Shown(const std::string& text) {
    return QString::fromStdString(TextToSystem(text));
}

// An ampersand that is one.
QString Plain(QString text) {
    return text.replace('&', "&&");
}

bool IsSomething(const MapPlace& place) {
    return place.target || place.device || !place.object.empty();
}

bool IsMenuKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_Menu ||
           (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
}

}  // namespace

MapMenu::MapMenu(MapWindow& window) : m_window(window) {
    m_window.installEventFilter(this);
    AddOwnEntries();
}

MapMenu::~MapMenu() {
    for (const Item& item : m_items) delete item.shortcut;
}

void MapMenu::AddOwnEntries() {
    const auto canBePressed = [](const MapPlace& place) { return place.target.has_value(); };
    Add({"&Press", {}, MapMenuEntry::kObject, canBePressed, [this](const MapPlace& place) {
             m_window.Press(*place.target);
         }});
    Add({"&Close", QKeySequence("Ctrl+Q"), MapMenuEntry::kMap, {}, [this](const MapPlace&) {
             m_window.close();
         }});
}

void MapMenu::Add(MapMenuEntry entry) {
    Item& item = m_items.emplace_back(Item{std::move(entry), nullptr});
    if (item.entry.shortcut.isEmpty()) return;
    item.shortcut = new QAction(&m_window);
    item.shortcut->setShortcut(item.entry.shortcut);
    m_window.addAction(item.shortcut);
    const MapMenuEntry& added = item.entry;
    connect(item.shortcut, &QAction::triggered, this, [this, &added] {
        const MapPlace place = PlaceOfFocus();
        if (Applies(added, place)) added.run(place);
    });
}

bool MapMenu::Applies(const MapMenuEntry& entry, const MapPlace& place) {
    if (entry.scope == MapMenuEntry::kObject && !IsSomething(place)) return false;
    return !entry.applies || entry.applies(place);
}

bool MapMenu::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::ContextMenu) {
        const auto* const menu = static_cast<QContextMenuEvent*>(event);
        const bool mouse = menu->reason() == QContextMenuEvent::Mouse;
        const MapPlace place = mouse ? PlaceAt(menu->pos()) : PlaceOfFocus();
        Show(place, mouse ? menu->globalPos() : MiddleOf(place));
        return true;
    }
    if (event->type() == QEvent::KeyPress && IsMenuKey(*static_cast<QKeyEvent*>(event))) {
        const MapPlace place = PlaceOfFocus();
        Show(place, MiddleOf(place));
        return true;
    }
    return false;
}

MapPlace MapMenu::PlaceOf(const host::MapSubject& subject, std::optional<std::size_t> target) const {
    MapPlace place;
    place.target = target;
    place.device = subject.device;
    if (target) place.caption = m_window.View().Targets()[*target].name.str();
    if (!subject.object) return place;
    place.object = subject.object->plan.name;
    place.caption = subject.object->plan.caption;
    return place;
}

MapPlace MapMenu::PlaceAt(const QPoint& inWindow) const {
    const host::MapView& view = m_window.View();
    const CPoint point = m_window.InMap(inWindow);
    return PlaceOf(view.SubjectAt(point), view.TargetAt(point));
}

MapPlace MapMenu::PlaceOfFocus() const {
    const host::MapView& view = m_window.View();
    const auto focus = view.Focus();
    return focus ? PlaceOf(view.SubjectOf(*focus), focus) : MapPlace();
}

QPoint MapMenu::MiddleOf(const MapPlace& place) const {
    QRect around = m_window.rect();
    if (place.target) around &= m_window.InWindow(m_window.View().Targets()[*place.target].bounds);
    return m_window.mapToGlobal(around.isEmpty() ? m_window.rect().center() : around.center());
}

// The menu key comes as a key and, on some desktops, as a wish for a menu too.
void MapMenu::Show(const MapPlace& place, const QPoint& global) {
    if (QApplication::activePopupWidget()) return;
    auto* const menu = new QMenu(&m_window);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (IsSomething(place)) {
        menu->addSection(Plain(Shown(place.caption)));
        AddEntries(*menu, MapMenuEntry::kObject, place);
    }
    menu->addSection(Plain(m_window.windowTitle()));
    AddEntries(*menu, MapMenuEntry::kMap, place);
    menu->popup(global);
    for (QAction* const action : menu->actions()) {
        if (action->isSeparator() || !action->isEnabled()) continue;
        menu->setActiveAction(action);
        break;
    }
}

void MapMenu::AddEntries(QMenu& menu, MapMenuEntry::Scope scope, const MapPlace& place) {
    for (const Item& item : m_items) {
        const MapMenuEntry& entry = item.entry;
        if (entry.scope != scope) continue;
        const QString keys = entry.shortcut.toString(QKeySequence::NativeText);
        QAction* const action = menu.addAction(keys.isEmpty() ? entry.text : entry.text + '\t' + keys);
        action->setEnabled(Applies(entry, place));
        // Later, so that a dialog does not run inside the menu that is closing.
        connect(
            action, &QAction::triggered, this, [&entry, place] { entry.run(place); }, Qt::QueuedConnection);
    }
}

}  // namespace brindle::map
