// Dialogs while the station runs: what is due happens behind them, whoever opened them; the end of the run is theirs.
#include <brindle/framework/ui/dialog.h>
#include <brindle/platform/qt/dialog_templates.h>

#include <QtCore/QTimer>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMenu>

#include <functional>
#include <sstream>
#include <utility>

#include "apps/brindle-map/map_pace.h"
#include "apps/brindle-map/map_sink.h"
#include "apps/brindle-map/map_window_test.h"
#include "host/map_events.h"
#include "host/site_runner.h"

namespace brindle::map {
namespace {

constexpr unsigned kTemplate = 7600;

class MapDialog : public MapWindowTest {
  protected:
    MapDialog() {
        m_written.WriteObjects({"a", "b"});
        m_written.Write(
            "site.ini",
            "[Site]\nDevices=devices.ini\n[Object a]\nAddress=1:1:1\n[Object b]\nAddress=1:1:2\n");
        WriteButton("a", "<WriteLogAction Text='first'/><WriteLogAction Text='second'/>");
        WriteButton("b", "<WriteLogAction Text='b says' Repeat='TRUE' Period='20'/>");
        m_site = host::Site();
        host::Problems problems;
        EXPECT_TRUE(LoadSite(m_written.Folder(), m_site, problems))
            << (problems.empty() ? "" : problems[0].text);
        Show("<button object='a' text='One' x='10' y='10' width='100' height='50'/>");
    }
    void WriteButton(const char* object, const std::string& actions) {
        m_written.WriteBehaviour(object, "<ButtonTrigger/>", actions);
    }
    static EventLine PressOf(const char* object) {
        EventLine press;
        press.kind = host::EventKind::kButton;
        press.object = object;
        return press;
    }
    void Press(const char* object) { m_events->Add(PressOf(object)); }
    std::size_t Count(const char* kind, const std::string& part) const {
        std::size_t count = 0;
        for (const host::RunRecord& record : m_records)
            count += record["kind"] == kind && record.dump().find(part) != std::string::npos;
        return count;
    }
    // Runs the site. `begin` is called by the desktop's loop, each step again and again until it is true, whichever
    // loop runs.
    void Play(std::function<void()> begin, std::vector<std::function<bool()>> steps,
              std::uint64_t limit = 120'000);

    std::optional<host::MapEvents> m_events;
    std::vector<host::RunRecord> m_records;
    std::vector<std::string> m_warnings;
    std::function<void(const host::RunRecord&)> m_seen;
};

void MapDialog::Play(std::function<void()> begin, std::vector<std::function<bool()>> steps,
                     std::uint64_t limit) {
    std::istringstream none;
    host::EventReader recording(none, "recording");
    MapPace pace;
    m_events.emplace(recording, pace);
    MapSink sink(*m_view, [this](const host::Problem& problem) { m_warnings.push_back(problem.text); });
    sink.seen = [this](const host::RunRecord& record) {
        m_records.push_back(record);
        if (m_seen) m_seen(record);
    };
    sink.closed = [&] { return m_window->IsClosed(); };
    m_window->SetOnClose([&pace] { pace.Wake(); });
    pace.SetBetween([&] {
        m_window->Refresh();
        return pace.Elapsed() + 1'000;
    });
    std::size_t done = 0;
    QTimer stepping;
    QObject::connect(&stepping, &QTimer::timeout, [&] {
        if (done < steps.size() && steps[done]()) ++done;
        if (pace.Elapsed() > 60'000) m_window->close();
    });
    stepping.start(2);
    QTimer::singleShot(0, m_window->parent(), begin);
    host::RunOptions how;
    how.reload = true;
    how.limit = limit;
    host::SiteRunner(m_site, *m_events, sink, pace, how).Run();
    EXPECT_EQ(done, steps.size()) << "this step never came true";
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(MapDialog, TheStationGoesOnBehindIt) {
    QDialog dialog(&*m_window);
    int result = -1;
    std::size_t whenClosed = 0;
    const auto open = [&] {
        result = dialog.exec();
        whenClosed = m_records.size();
        m_window->close();
    };
    Play(open, {[&] {
                    if (!dialog.isVisible()) return false;
                    Press("a");
                    Press("b");
                    return true;
                },
                [&] { return Count("log", "second") == 1 && Count("log", "b says") > 3; },
                [&] {
                    WriteButton("a", "<WriteLogAction Text='edited'/>");
                    return true;
                },
                [&] { return Count("reload", "a.xml") == 1; },
                [&] {
                    Press("a");
                    return true;
                },
                [&] {
                    if (Count("log", "edited") == 0) return false;
                    EXPECT_TRUE(dialog.isVisible());
                    dialog.accept();
                    return true;
                }});
    EXPECT_EQ(result, QDialog::Accepted);
    EXPECT_EQ(Count("log", "first"), 1u);
    EXPECT_EQ(whenClosed, m_records.size()) << "all of it was before";
    EXPECT_TRUE(m_warnings.empty());
}

// The walk it stands in goes on afterwards as if nothing had been between.
TEST_F(MapDialog, OfAnActionLetsTheOthersGoOn) {
    QDialog dialog(&*m_window);
    m_seen = [&](const host::RunRecord& record) {
        if (record["kind"] == "log" && record["text"] == "first") dialog.exec();
    };
    std::size_t whenClosed = 0;
    Play([&] { Press("a"); },
         {[&] {
              if (!dialog.isVisible()) return false;
              Press("b");
              WriteButton("a", "<WriteLogAction Text='edited'/>");
              return true;
          },
          [&] { return Count("log", "b says") > 30; },  // longer than a look at the files takes to come
          [&] {
              EXPECT_EQ(Count("log", "second"), 0u);
              EXPECT_EQ(Count("reload", "a.xml"), 0u) << "its list is being walked";
              whenClosed = m_records.size();
              dialog.accept();
              return true;
          },
          [&] { return Count("reload", "a.xml") == 1; }, [&] { return m_window->close(); }});
    ASSERT_GT(m_records.size(), whenClosed);
    const host::RunRecord& next = m_records[whenClosed];
    EXPECT_EQ(next.value("text", ""), "second") << next;
    EXPECT_EQ(next.value("object", ""), "a") << next;
    EXPECT_EQ(next.value("by", ""), "event") << next;
}

TEST_F(MapDialog, SixteenOfActionsAreTheMost) {
    std::vector<std::unique_ptr<QDialog>> dialogs;
    m_seen = [&](const host::RunRecord& record) {
        if (record["kind"] != "log" || record["text"] != "first") return;
        dialogs.push_back(std::make_unique<QDialog>(&*m_window));
        dialogs.back()->exec();
    };
    for (int i = 0; i < 30; ++i) m_presses.push_back(PressOf("a"));
    int looks = 0;
    Play(
        [&] {
            for (const EventLine& press : m_presses) m_events->Add(press);
        },
        {[&] { return dialogs.size() == 16; }, [&] { return ++looks == 100; },
         [&] {
             EXPECT_EQ(dialogs.size(), 16u);
             return m_window->close();
         }});
}

// A dialog of the library's; as much as a window needs.
class Question final : public CDialog {
  public:
    using CDialog::CDialog;
    bool cancelled = false;

  protected:
    void OnCancel() override { cancelled = true; }  // it does not want to go
};

TEST_F(MapDialog, ClosingTheWindowEndsThemAll) {
    RegisterDialogTemplate(kTemplate, [](QWidget& window) { window.setWindowTitle("?"); });
    Question question(kTemplate);
    QDialog second;
    QMenu menu;
    int answer = 0;
    const auto open = [&] {
        QTimer::singleShot(0, &second, [&] {
            QTimer::singleShot(0, &menu, [&] { menu.exec(); });
            menu.addAction("Nothing");
            second.exec();
        });
        answer = question.DoModal();
    };
    Play(open, {[&] { return menu.isVisible(); }, [&] { return m_window->close(); }});
    EXPECT_EQ(answer, 2);
    EXPECT_TRUE(question.cancelled);
    EXPECT_EQ(second.result(), QDialog::Rejected);
    EXPECT_EQ(Count("end", ""), 0u) << "a closed window is no end of its own";
}

TEST_F(MapDialog, TheEndOfTheTimeEndsItAndComesLast) {
    QDialog dialog(&*m_window);
    m_seen = [&](const host::RunRecord& record) {
        if (record["kind"] == "log" && record["text"] == "first") dialog.exec();
    };
    Play([&] { Press("a"); }, {[&] { return dialog.isVisible(); }}, 500);
    ASSERT_FALSE(m_records.empty());
    EXPECT_EQ(Count("log", "second"), 1u);
    EXPECT_EQ(m_records.back()["kind"], "end");
}

}  // namespace
}  // namespace brindle::map
