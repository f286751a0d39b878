// Tests: map_window_test.cpp.
#include "apps/brindle-map/map_accessible.h"

#include <brindle/library/host_text.h>

#include <QtGui/QAccessible>
#include <QtWidgets/QAccessibleWidget>

#include <vector>

#include "apps/brindle-map/map_window.h"

namespace brindle::map {
namespace {

// One target; it is whatever has that index at present.
class TargetAccessible final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    TargetAccessible(MapWindow& window, std::size_t index) : m_window(window), m_index(index) {}

    bool isValid() const override { return m_index < m_window.View().Targets().size(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_window); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) return {};
        return QString::fromStdString(TextToSystem(Target().name.view()));
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        const QRect place = m_window.InWindow(Target().bounds);
        return {m_window.mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::Role role() const override {
        const host::MapTarget target = Target();
        if (target.isAlarm) return QAccessible::ListItem;
        return target.stays ? QAccessible::CheckBox : QAccessible::Button;
    }
    QAccessible::State state() const override {
        const host::MapTarget target = Target();
        QAccessible::State state;
        state.focusable = true;
        state.focused = m_window.View().Focus() == m_index;
        state.checkable = target.stays;
        state.checked = target.pressedIn;
        state.animated = target.unacknowledged;
        state.offscreen = target.bounds.left >= target.bounds.right;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString& action) override {
        if (action == pressAction()) m_window.Press(m_index);
        if (action == setFocusAction()) m_window.View().SetFocus(m_index);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

  private:
    host::MapTarget Target() const {
        const std::vector<host::MapTarget> targets = m_window.View().Targets();
        return m_index < targets.size() ? targets[m_index] : host::MapTarget();
    }

    MapWindow& m_window;
    std::size_t m_index;
};

class MapAccessible final : public QAccessibleWidget {
  public:
    explicit MapAccessible(MapWindow& window)
        : QAccessibleWidget(&window, QAccessible::Client, window.windowTitle()), m_window(window) {}
    MapAccessible(const MapAccessible&) = delete;
    MapAccessible& operator=(const MapAccessible&) = delete;

    int childCount() const override { return static_cast<int>(m_window.View().Targets().size()); }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) return nullptr;
        while (m_children.size() <= static_cast<std::size_t>(index))
            m_children.push_back(
                QAccessible::registerAccessibleInterface(new TargetAccessible(m_window, m_children.size())));
        return QAccessible::accessibleInterface(m_children[static_cast<std::size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (std::size_t i = 0; i < m_children.size(); ++i)
            if (QAccessible::accessibleInterface(m_children[i]) == child) return static_cast<int>(i);
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const auto target = m_window.View().TargetAt(m_window.InMap(m_window.mapFromGlobal(QPoint(x, y))));
        return target ? child(static_cast<int>(*target)) : nullptr;
    }
    QAccessibleInterface* focusChild() const override {
        const auto focus = m_window.View().Focus();
        return focus ? child(static_cast<int>(*focus)) : nullptr;
    }

  protected:
    ~MapAccessible() override {
        for (const QAccessible::Id id : m_children) QAccessible::deleteAccessibleInterface(id);
    }

  private:
    MapWindow& m_window;
    mutable std::vector<QAccessible::Id> m_children;  // made when asked for
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object) {
    auto* window = dynamic_cast<MapWindow*>(object);
    return window ? new MapAccessible(*window) : nullptr;
}

}  // namespace

void InstallMapAccessibility() {
    QAccessible::installFactory(MakeAccessible);
}

}  // namespace brindle::map
