// Tests: open_site_test.cpp, map_tool_test.cpp.
#include "apps/brindle-map/map_player.h"

#include <brindle/behaviour/action_files.h>
#include <brindle/library/host_text.h>
#include <brindle/platform/desktop.h>
#include <brindle/platform/qt/dialog_templates.h>
#include <brindle/widgets/flash_timer.h>

#include <QtCore/QDir>
#include <QtCore/QStandardPaths>

#include <algorithm>
#include <limits>
#include <utility>

#include "apps/brindle-map/action_chooser.h"
#include "apps/brindle-map/dialog_owner.h"
#include "apps/brindle-map/map_accessible.h"
#include "apps/brindle-map/map_menu.h"
#include "apps/brindle-map/map_pace.h"
#include "apps/brindle-map/map_sink.h"
#include "apps/brindle-map/map_window.h"
#include "apps/brindle-map/open_site.h"
#include "apps/brindle-map/rule_editor_registration.h"
#include "apps/brindle-map/settings_dialog.h"
#include "apps/brindle/cli_output.h"
#include "host/map_events.h"
#include "host/map_file.h"
#include "host/site_runner.h"

namespace brindle::map {
namespace {

constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

// The phases of blinking, from the toolkit's own timer.
class Blink final : public CFlashCallBack {
  public:
    explicit Blink(host::MapView& view) : m_view(view) { StartFlashTimer(this); }
    void OnFlash(int state) override { m_view.SetBlink(state == 1); }

  private:
    host::MapView& m_view;
};

// The custom colours of the colour picker are the user's, whatever the site.
void KeepColoursOfUser() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/brindle";
    std::string file;
    if (!QDir().mkpath(folder) || !TextFromSystem((folder + "/user-interface.ini").toStdString(), file))
        return;
    SetUserInterfaceIniFile(file.c_str());
}

// One site in the window, from its start to its end.
class SitePlayer {
  public:
    SitePlayer(LoadedMap& map, MapWindow& window);
    SitePlayer(const SitePlayer&) = delete;
    SitePlayer& operator=(const SitePlayer&) = delete;
    ~SitePlayer();

    // Runs the site for at most so long. Returns the site that was opened in its place, ready to be shown; null: the
    // window is closed, or the time is over.
    std::unique_ptr<LoadedMap> Play(std::uint64_t limit);
    std::uint64_t Elapsed() { return m_pace.Elapsed(); }

  private:
    void AddEntries();
    void OpenOther();
    std::uint64_t ShowWhatIsDue();

    LoadedMap& m_map;
    MapWindow& m_window;
    MapPace m_pace;
    host::MapEvents m_events;
    MapMenu m_menu;
    const RuleEditorRegistration m_rules;
    ActionChooser m_chooser;
    std::unique_ptr<LoadedMap> m_next;
};

SitePlayer::SitePlayer(LoadedMap& map, MapWindow& window)
    : m_map(map),
      m_window(window),
      m_events(map.Events(), m_pace),
      m_menu(window),
      m_rules(map.Site().devices),
      m_chooser(map.Site()) {
    m_map.press = [this](const host::EventLine& line) { m_events.Add(line); };
    m_window.SetOnClose([this] { m_pace.Wake(); });
    m_pace.SetBetween([this] { return ShowWhatIsDue(); });
    AddEntries();
}

SitePlayer::~SitePlayer() {
    m_map.press = {};
    m_window.SetOnClose({});
}

void SitePlayer::AddEntries() {
    m_menu.Add({"&Open site...", QKeySequence("Ctrl+O"), MapMenuEntry::kMap, {}, [this](const MapPlace&) {
                    OpenOther();
                }});
    m_menu.Add({"&Settings...", QKeySequence("Ctrl+,"), MapMenuEntry::kMap, {}, [this](const MapPlace&) {
                    DialogOwner owner;
                    ShowSettings(m_map.Site().plan, owner.Window());
                }});
    m_menu.Add({"&Actions...", QKeySequence("Ctrl+E"), MapMenuEntry::kObject,
                [this](const MapPlace& place) { return m_chooser.Knows(place.object); },
                [this](const MapPlace& place) { m_chooser.EditObject(place.object); }});
}

// Everything of the other site that may fail is done while this one runs.
void SitePlayer::OpenOther() {
    const auto folder = ChooseSite(HandleOf(&m_window), m_map.Site().plan.folder);
    if (!folder || m_window.IsClosed()) return;
    std::string why;
    try {
        auto next = std::make_unique<LoadedMap>(*folder);
        next->OpenEvents({}, true);
        m_next = std::move(next);
    } catch (const tool::Failure& failure) {
        why = "The site was not opened, and this one goes on.\n" + failure.What() + ": " + failure.Why();
    }
    if (m_next) return m_pace.Wake();
    host::MapDrives(m_map.Site().plan);  // the other one may have mapped its own
    CurrentDesktop().ShowMessage(HandleOf(&m_window), MessageIcon::kError, why);
}

std::uint64_t SitePlayer::ShowWhatIsDue() {
    const std::uint64_t still = host::MoveWhatIsDue();
    m_window.Refresh();
    return std::min(m_events.NextDue().value_or(kNever), m_pace.Elapsed() + still);
}

std::unique_ptr<LoadedMap> SitePlayer::Play(std::uint64_t limit) {
    MapSink sink(m_map.View(), Tell);
    sink.closed = [this] { return m_window.IsClosed() || m_next; };
    sink.seen = [this](const host::RunRecord& record) {
        if (record["kind"] == "reload") m_window.Fit();
    };
    const Blink blink(m_map.View());
    host::RunOptions how;
    how.reload = true;
    how.limit = limit;
    how.watch = [this](host::SiteReloader& reloader) {
        reloader.Add(std::make_unique<host::MapFile>(m_map.Site().plan.map, m_map.Marks(), m_map.View()));
    };
    host::SiteRunner(m_map.Site(), m_events, sink, m_pace, how).Run();
    return m_window.IsClosed() ? nullptr : std::move(m_next);
}

QString TitleOf(const LoadedMap& map) {
    return QString::fromStdString(TextToSystem(map.Title()));
}

}  // namespace

void PlayInWindow(std::unique_ptr<LoadedMap> map, const PlayOptions& options) {
    InstallMapAccessibility();
    KeepColoursOfUser();
    MapWindow window(map->View(), TitleOf(*map), options.scale);
    window.show();
    std::uint64_t limit = options.limit.value_or(kNever - 1);
    for (;;) {
        std::unique_ptr<LoadedMap> next;
        {
            SitePlayer player(*map, window);
            next = player.Play(limit);
            limit -= std::min(limit, player.Elapsed());
        }
        if (!next) return;
        next->MakeView();
        window.ShowMap(next->View(), TitleOf(*next));
        map = std::move(next);
        map->AnswerFields();
    }
}

}  // namespace brindle::map
