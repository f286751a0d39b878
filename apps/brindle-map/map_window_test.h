// A window on a map of a small site, on the platform without a screen. For tests only.
#pragma once

#include <gtest/gtest.h>

#include <brindle/platform/qt/qt_services.h>

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>

#include <optional>
#include <string>
#include <vector>

#include "apps/brindle-map/map_accessible.h"
#include "apps/brindle-map/map_window.h"
#include "host/register_types.h"
#include "host/site.h"
#include "host/written_site_test.h"

namespace brindle::map {

using host::EventLine;
using host::MapView;

inline void NeedApplication() {
    if (QCoreApplication::instance()) return;
    static char name[] = "test";
    static char platform[] = "-platform";
    static char offscreen[] = "offscreen";
    static char* arguments[] = {name, platform, offscreen, nullptr};
    static int count = 3;
    new QApplication(count, arguments);  // as long as the process
    InstallQtServices();
    InstallMapAccessibility();
}

class MapWindowTest : public ::testing::Test {
  protected:
    MapWindowTest() {
        NeedApplication();
        host::RegisterHostTypes();
        m_written.WriteObjects({"a"});
        m_written.Write("site.ini", "[Site]\nDevices=devices.ini\n[Object a]\nAddress=1:1:1\n");
        m_written.Write("devices.ini",
                        "[0001:01:01]\nName=Camera\nState=1\n[0001:01:02]\nName=Fan\nState=1\n");
        m_written.WriteBehaviour("a", "<ButtonTrigger/>",
                                 "<SendStateAction Address='0001:01:02' State='3' Text='pressed'/>");
        host::Problems problems;
        EXPECT_TRUE(LoadSite(m_written.Folder(), m_site, problems))
            << (problems.empty() ? "" : problems[0].text);
        RegisterIBrindleData(&m_site.devices);
    }
    ~MapWindowTest() override { RegisterIBrindleData(nullptr); }

    MapWindow& Show(const std::string& elements, double scale = 1) {
        host::MapDocument document;
        host::Problems problems;
        EXPECT_TRUE(host::ReadMapText("<map width='400' height='300'>" + elements + "</map>", "map", document,
                                      problems));
        m_view.emplace(m_site, document, [this](const EventLine& line) { m_presses.push_back(line); });
        m_window.emplace(*m_view, "A map", scale);
        m_window->show();
        Settle();
        return *m_window;
    }
    void Settle() {
        m_window->Refresh();
        for (int i = 0; i < 20; ++i) QCoreApplication::processEvents();
    }
    void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button = Qt::LeftButton) {
        QMouseEvent event(type, at, m_window->mapToGlobal(at), button, button, Qt::NoModifier);
        QCoreApplication::sendEvent(&*m_window, &event);
    }
    void Click(QPoint at) {
        Mouse(QEvent::MouseMove, at, Qt::NoButton);
        Mouse(QEvent::MouseButtonPress, at);
        Mouse(QEvent::MouseButtonRelease, at);
        Settle();
    }
    void Key(int key, const QString& text = {}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&*m_window, &press);
        Settle();
    }
    void State(const char* address, int state) {
        EventLine event;
        EXPECT_EQ(host::ParseEventLine(std::string(R"({"kind":"state","address":")") + address +
                                           R"(","state":)" + std::to_string(state) + "}",
                                       event),
                  "");
        const CStateEvent* made = MakeEvent(event, CAddressOv());
        m_view->Take({{"kind", "event"}, {"event", "state"}, {"address", address}, {"state", state}});
        m_site.devices.Take(*made);
        made->Release();
    }

    host::WrittenSite m_written;
    host::Site m_site;
    std::optional<MapView> m_view;
    std::optional<MapWindow> m_window;
    std::vector<EventLine> m_presses;
};

}  // namespace brindle::map
