// A session at a map, from the first alarm to edited files: a whole run in real time, on the platform without a screen.
// Each step waits for what it wants to see.
#include <brindle/widgets/flash_timer.h>

#include <functional>
#include <sstream>

#include "apps/brindle-map/map_pace.h"
#include "apps/brindle-map/map_sink.h"
#include "apps/brindle-map/map_window_test.h"
#include "host/map_events.h"
#include "host/map_file.h"
#include "host/site_runner.h"
#include "testing/picture_bytes.h"

namespace brindle::map {
namespace {

constexpr const char* kMap =
    "<map width='400' height='300'><button object='a' text='Press' x='10' y='10' width='100' height='40'/>"
    "<picture x='200' y='10' width='40' height='40' picture='moving.gif'/>"
    "<alarms x='10' y='100' width='380' height='90'/></map>";

class Blink final : public CFlashCallBack {
  public:
    explicit Blink(MapView& view) : m_view(view) { StartFlashTimer(this); }
    void OnFlash(int state) override { m_view.SetBlink(state == 1); }

  private:
    MapView& m_view;
};

class MapSession : public MapWindowTest {
  protected:
    MapSession() {
        std::string devices = "[0001:01:01]\nName=Camera\n";
        for (int i = 1; i < 10; ++i) {
            const std::string address = "0002:00:0" + std::to_string(i);
            devices += "[" + address + "]\nName=D" + std::to_string(i) + "\n";
            m_events += R"({"kind":"state","address":")" + address + R"(","state":3})" + "\n";
        }
        m_written.Write(
            "site.ini",
            "[Site]\nDevices=devices.ini\nMap=map.xml\nSkin=skin.xml\n[Object a]\nAddress=1:1:1\n");
        m_written.Write("devices.ini", devices);
        m_written.Write("map.xml", kMap);
        m_written.Write("skin.xml", "<skin><default><button fillcoloura='#101010'/></default></skin>");
        m_written.Write("moving.gif", testing::GifBytes(4, 4, {{1, 3}, {2, 3}, {3, 3}}));
        m_written.WriteBehaviour("a", "<ButtonTrigger/>", "<WriteLogAction Text='pressed'/>");
        m_site = host::Site();
        host::Problems problems;
        EXPECT_TRUE(LoadSite(m_written.Folder(), m_site, problems))
            << (problems.empty() ? "" : problems[0].text);
        host::MapDocument document;
        m_marks = MarksOfHostFile(m_site.plan.map);
        EXPECT_TRUE(ReadMapDocument(m_site.plan.map, document, problems));
        m_view.emplace(m_site, document, [this](const EventLine& line) { m_presses.push_back(line); });
        m_window.emplace(*m_view, "A session", 1);
        m_window->show();
    }
    QImage Picture(const QRect& place) { return m_window->grab(place).toImage(); }
    // A picture of the place as it is when the step begins; later whether it is another one.
    std::function<bool()> Changes(const QRect& place) {
        return [this, place, first = std::optional<QImage>()]() mutable {
            if (!first) first = Picture(place);
            return Picture(place) != *first;
        };
    }
    bool Happened(const char* kind, const std::string& part) const {
        for (const host::RunRecord& record : m_records)
            if (record["kind"] == kind && record.dump().find(part) != std::string::npos) return true;
        return false;
    }
    CRect FirstRow() { return m_view->Targets().at(1).bounds; }
    // Runs the site until every step was true, in their order.
    void Play(const std::vector<std::function<bool()>>& steps);

    std::string m_events;
    HostFileMarks m_marks;
    std::vector<host::RunRecord> m_records;
    std::vector<std::string> m_warnings;
};

void MapSession::Play(const std::vector<std::function<bool()>>& steps) {
    std::istringstream input(m_events);
    host::EventReader recording(input, "recording");
    MapPace pace;
    host::MapEvents events(recording, pace);
    MapSink sink(*m_view, [this](const host::Problem& problem) { m_warnings.push_back(problem.text); });
    std::size_t done = 0;
    sink.seen = [this](const host::RunRecord& record) {
        m_records.push_back(record);
        if (record["kind"] == "reload") m_window->Fit();
    };
    sink.closed = [&] { return done == steps.size() || pace.Elapsed() > 60'000; };
    pace.SetBetween([&] {
        host::MoveWhatIsDue();
        m_window->Refresh();
        if (done < steps.size() && steps[done]()) ++done;
        for (const EventLine& press : std::exchange(m_presses, {})) events.Add(press);
        return pace.Elapsed() + 10;
    });
    const Blink blink(*m_view);
    host::RunOptions how;
    how.reload = true;
    how.limit = 120'000;
    how.watch = [this](host::SiteReloader& reloader) {
        reloader.Add(std::make_unique<host::MapFile>(m_site.plan.map, m_marks, *m_view));
    };
    host::SiteRunner(m_site, events, sink, pace, how).Run();
    EXPECT_EQ(done, steps.size()) << "this step never came true";
}

TEST_F(MapSession, FromTheFirstAlarmToEditedFiles) {
    const QRect alarms(10, 100, 350, 90);
    const auto done = [](auto action) {
        return [action] {
            action();
            return true;
        };
    };
    int top = 0;
    Play({
        [this] { return m_view->Targets().size() == 10; },
        done([this] {
            Picture({0, 0, 400, 300});
        }),  // the bar is hit where it was drawn
        // The thumb is 20 below the panel's top; to the middle of the bar.
        done([&] {
            top = FirstRow().top;
            Mouse(QEvent::MouseButtonPress, {380, 130});
            Mouse(QEvent::MouseMove, {380, 150});
            Mouse(QEvent::MouseButtonRelease, {380, 150});
            Picture({0, 0, 400, 300});
        }),
        [&] { return FirstRow().top != top || FirstRow().right == 0; },
        done([this] {
            for (int i = 0; i < 10; ++i) {
                Mouse(QEvent::MouseButtonPress, {380, 110});
                Mouse(QEvent::MouseButtonRelease, {380, 110});
            }
            Picture({0, 0, 400, 300});
        }),
        [&] { return FirstRow().top == top; },
        Changes(alarms),                  // blinking
        Changes(QRect(205, 15, 30, 30)),  // moving
        done([this] { m_window->resize(800, 600); }),
        [this] { return m_view->Scale() == 2; },
        done([this] {
            Key(Qt::Key_Tab);
            Key(Qt::Key_Space, " ");
        }),
        [this] { return Happened("log", "pressed"); },
        done([this] {
            Click({100, 240});
        }),  // a row
        [this] { return !m_view->Alarms().IsUnacknowledged(0x00020009); },
        done([this] {
            m_written.Write("skin.xml", "<skin><default><button fillcoloura='#20A0F0'/></default></skin>");
        }),
        [this] { return Happened("reload", "skin.xml"); },
        done([this] { m_written.Write("map.xml", "<map width='400' height='300'><broken/></map>"); }),
        [this] { return !m_warnings.empty(); },
        [this] { return m_view->Document().elements.size() == 3; },
        done([this] { m_written.Write("map.xml", "<map width='200' height='300'/>"); }),
        [this] {
            return Happened("reload", "map.xml") && m_view->Size() == CSize{400, 600};
        },
    });
    EXPECT_EQ(m_warnings.size(), 1u);
    EXPECT_TRUE(m_view->Targets().empty());
}

}  // namespace
}  // namespace brindle::map
