// brindle-map: plays a site and shows its map, in a window or as a picture. Tests: map_tool_test.cpp.
#include "apps/brindle-map/map_command.h"

#include <brindle/behaviour/action_files.h>
#include <brindle/library/host_text.h>
#include <brindle/macro/brindle_data.h>
#include <brindle/platform/qt/qt_services.h>
#include <brindle/widgets/flash_timer.h>

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <limits>
#include <memory>

#include "apps/brindle-map/action_chooser.h"
#include "apps/brindle-map/dialog_owner.h"
#include "apps/brindle-map/map_accessible.h"
#include "apps/brindle-map/map_application.h"
#include "apps/brindle-map/map_menu.h"
#include "apps/brindle-map/map_pace.h"
#include "apps/brindle-map/map_picture.h"
#include "apps/brindle-map/map_sink.h"
#include "apps/brindle-map/map_window.h"
#include "apps/brindle-map/rule_editor_registration.h"
#include "apps/brindle-map/settings_dialog.h"
#include "apps/brindle/cli.h"
#include "apps/brindle/play_input.h"
#include "host/map_events.h"
#include "host/map_file.h"
#include "host/site_runner.h"
#include "host/words.h"

namespace brindle::map {
namespace {

using tool::Failure;
using tool::kWrongUsage;

struct MapOptions {
    std::string site;
    std::optional<std::string> screenshot;
    std::optional<std::string> scale;
    std::optional<std::string> events;
    std::optional<int> seconds;
};

void Tell(const host::Problem& problem) {
    tool::Complain(problem.Place(), problem.text);
}

double ScaleOf(const MapOptions& options) {
    double scale = 1;
    if (!options.scale) return scale;
    if (!host::ParseReal(*options.scale, scale) || scale < host::MapView::kLeastScale ||
        scale > host::MapView::kLargestScale)
        throw Failure(kWrongUsage, "--scale", "\"" + *options.scale + "\" is not a number from 0.05 to 20");
    return scale;
}

// The site, its map, and the answers to "#" fields outside a run.
class LoadedMap {
  public:
    explicit LoadedMap(const std::string& folder) {
        tool::LoadOrFail(folder, m_site);
        const std::string& path = m_site.plan.map;
        if (path.empty()) throw Failure(kWrongUsage, m_site.plan.file, "names no \"Map\"");
        m_marks = MarksOfHostFile(path);
        host::Problems problems;
        const bool read = host::ReadMapDocument(path, m_document, problems);
        for (std::size_t i = read ? 0 : 1; i < problems.size(); ++i) Tell(problems[i]);
        if (!read) throw Failure(kWrongUsage, problems.at(0).Place(), problems.at(0).text);
        RegisterIBrindleData(&m_site.devices);
    }
    // Once the desktop's services are there: pictures are loaded.
    void MakeView() {
        m_view.emplace(m_site, std::move(m_document), [this](const host::EventLine& line) {
            if (press) press(line);
        });
    }
    LoadedMap(const LoadedMap&) = delete;
    LoadedMap& operator=(const LoadedMap&) = delete;
    ~LoadedMap() { RegisterIBrindleData(nullptr); }

    host::Site& Site() noexcept { return m_site; }
    host::MapView& View() noexcept { return *m_view; }
    const HostFileMarks& Marks() const noexcept { return m_marks; }
    std::string Title() const {
        const CStringA& title = m_view->Document().title;
        return title.IsEmpty() ? m_site.plan.name : title.str();
    }

    std::function<void(const host::EventLine&)> press;

  private:
    host::Site m_site;
    HostFileMarks m_marks;
    host::MapDocument m_document;
    std::optional<host::MapView> m_view;
};

// The end at once.
class NoRecording final : public host::EventSource {
  public:
    std::optional<host::EventItem> Next(std::chrono::milliseconds) override { return host::EventItem(); }
};

// A map needs no events: it shows what the files say.
std::unique_ptr<host::EventSource> NoInput(const MapOptions& options, const host::Site& site) {
    if (options.events || !site.plan.recording.empty()) return nullptr;
    return std::make_unique<NoRecording>();
}

class MapInput {
  public:
    MapInput(const MapOptions& options, const host::Site& site, bool live) : m_none(NoInput(options, site)) {
        if (!m_none) m_input.emplace(options.events, site, live);
    }
    host::EventSource& Source() { return m_none ? *m_none : m_input->Source(); }

  private:
    std::unique_ptr<host::EventSource> m_none;
    std::optional<tool::EventInput> m_input;
};

// The phases of blinking, from the toolkit's own timer.
class Blink final : public CFlashCallBack {
  public:
    explicit Blink(host::MapView& view) : m_view(view) { StartFlashTimer(this); }
    void OnFlash(int state) override { m_view.SetBlink(state == 1); }

  private:
    host::MapView& m_view;
};

// Plays the recording on a clock that jumps, up to the moment of the picture.
void PlayUntil(const MapOptions& options, LoadedMap& map) {
    MapInput input(options, map.Site(), false);
    host::RunOptions how;
    const int preview = map.View().Document().preview;
    if (options.seconds)
        how.limit = static_cast<std::uint64_t>(*options.seconds) * 1000;
    else if (!options.events && preview > 0)
        how.limit = static_cast<std::uint64_t>(preview) * 1000;
    MapSink sink(map.View(), Tell);
    sink.seen = [&map](const host::RunRecord& record) {
        if (record["kind"] == "end") map.View().Refresh();
    };
    host::FastPace pace(map.Site().plan.start);
    host::SiteRunner(map.Site(), input.Source(), sink, pace, how).Run();
}

int TakePicture(const MapOptions& options, LoadedMap& map, double scale) {
    map.View().SetScale(scale);
    PlayUntil(options, map);
    std::string png;
    std::string why = DrawPicture(map.View(), png);
    if (why.empty()) why = WriteHostFile(*options.screenshot, png).text;
    if (!why.empty()) throw Failure(kWrongUsage, *options.screenshot, why);
    return tool::kAnswered;
}

// The custom colours of the colour picker are the user's, whatever the site.
void KeepColoursOfUser() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/brindle";
    std::string file;
    if (!QDir().mkpath(folder) || !TextFromSystem((folder + "/user-interface.ini").toStdString(), file))
        return;
    SetUserInterfaceIniFile(file.c_str());
}

int OpenWindow(const MapOptions& options, LoadedMap& map, double scale) {
    InstallMapAccessibility();
    MapInput input(options, map.Site(), true);
    MapPace pace;
    host::MapEvents events(input.Source(), pace);
    map.press = [&events](const host::EventLine& line) { events.Add(line); };
    MapWindow window(map.View(), QString::fromStdString(TextToSystem(map.Title())), scale);
    window.SetOnClose([&pace] { pace.Wake(); });
    MapMenu menu(window);
    KeepColoursOfUser();
    menu.Add({"&Settings...", QKeySequence("Ctrl+,"), MapMenuEntry::kMap, {}, [&map](const MapPlace&) {
                  DialogOwner owner;
                  ShowSettings(map.Site().plan, owner.Window());
              }});
    MapSink sink(map.View(), Tell);
    sink.closed = [&window] { return window.IsClosed(); };
    sink.seen = [&window](const host::RunRecord& record) {
        if (record["kind"] == "reload") window.Fit();
    };
    constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();
    pace.SetBetween([&] {
        const std::uint64_t still = host::MoveWhatIsDue();
        window.Refresh();
        return std::min(events.NextDue().value_or(kNever), pace.Elapsed() + still);
    });
    const Blink blink(map.View());
    const RuleEditorRegistration rules(map.Site().devices);
    ActionChooser chooser(map.Site());
    menu.Add({"&Actions...", QKeySequence("Ctrl+E"), MapMenuEntry::kObject,
              [&](const MapPlace& place) { return chooser.Knows(place.object); },
              [&](const MapPlace& place) { chooser.EditObject(place.object); }});
    host::RunOptions how;
    how.reload = true;
    how.limit = options.seconds ? static_cast<std::uint64_t>(*options.seconds) * 1000 : kNever - 1;
    how.watch = [&map](host::SiteReloader& reloader) {
        reloader.Add(std::make_unique<host::MapFile>(map.Site().plan.map, map.Marks(), map.View()));
    };
    window.show();
    host::SiteRunner(map.Site(), events, sink, pace, how).Run();
    map.press = {};
    return tool::kAnswered;
}

int ShowMap(const MapOptions& options) {
    if (options.seconds && *options.seconds < 0)
        throw Failure(kWrongUsage, "--for", "\"" + std::to_string(*options.seconds) + "\" is negative");
    const double scale = ScaleOf(options);
    LoadedMap map(options.site);
    const bool display = qEnvironmentVariableIsSet("DISPLAY") ||
                         qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
                         qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
    if (!options.screenshot && !display)
        throw Failure(kWrongUsage, "brindle-map",
                      "there is no display to open a window on; --screenshot needs none");
    char name[] = "brindle-map";
    char platform[] = "-platform";
    char offscreen[] = "offscreen";
    char* arguments[] = {name, platform, offscreen, nullptr};
    int count = options.screenshot ? 3 : 1;
    const char* const advice = options.screenshot ? "" : "; --screenshot needs none";
    const std::unique_ptr<QApplication> application = MakeApplication(count, arguments, advice);
    InstallQtServices();
    map.MakeView();
    return options.screenshot ? TakePicture(options, map, scale) : OpenWindow(options, map, scale);
}

}  // namespace

void DeclareMap(tool::Command& tool) {
    auto options = std::make_shared<MapOptions>();
    tool.Text("SITE", options->site, "the folder of the site, the one that holds site.ini");
    tool.Option("--screenshot", "FILE", options->screenshot,
                "draw the map into a PNG file and end; needs no display");
    tool.Option("--scale", "SCALE", options->scale, "the size of the map, 1 as its file says: 0.05 to 20");
    tool.Option("--events", "FILE", options->events,
                "events as JSON lines, \"-\" for the standard input; without it the site's own recording");
    tool.Option("--for", "SECONDS", options->seconds,
                "close the window then; of a screenshot the moment of the recording it shows");
    tool.Note(
        "The window plays the site in real time: its recording, its polls, its behaviours. Presses become "
        "events. It "
        "stays open until it is closed. Tab, the arrow keys and Space work like the mouse. A screenshot "
        "plays the "
        "recording on a clock that jumps; without --for up to the map's \"preview\", else to its end.");
    tool.Example("brindle-map examples/sites/studio", "opens the map of the example station");
    tool.Example("brindle-map examples/sites/studio --screenshot map.png --scale 2",
                 "draws it, twice as large");
    tool.Run([options] { return ShowMap(*options); });
}

}  // namespace brindle::map
