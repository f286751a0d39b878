// brindle-map: plays a site and shows its map, in a window or as a picture. Tests: map_tool_test.cpp.
#include "apps/brindle-map/map_command.h"

#include <brindle/platform/qt/qt_services.h>

#include <QtWidgets/QApplication>

#include <memory>

#include "apps/brindle-map/loaded_map.h"
#include "apps/brindle-map/map_application.h"
#include "apps/brindle-map/map_picture.h"
#include "apps/brindle-map/map_player.h"
#include "apps/brindle-map/map_sink.h"
#include "apps/brindle/cli.h"
#include "apps/brindle/play_input.h"
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

double ScaleOf(const MapOptions& options) {
    double scale = 1;
    if (!options.scale) return scale;
    if (!host::ParseReal(*options.scale, scale) || scale < host::MapView::kLeastScale ||
        scale > host::MapView::kLargestScale)
        throw Failure(kWrongUsage, "--scale", "\"" + *options.scale + "\" is not a number from 0.05 to 20");
    return scale;
}

// Plays the recording on a clock that jumps, up to the moment of the picture.
void PlayUntil(const MapOptions& options, LoadedMap& map) {
    map.OpenEvents(options.events, false);
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
    host::SiteRunner(map.Site(), map.Events(), sink, pace, how).Run();
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

int OpenWindow(const MapOptions& options, std::unique_ptr<LoadedMap> map, double scale) {
    PlayOptions how;
    how.scale = scale;
    if (options.seconds) how.limit = static_cast<std::uint64_t>(*options.seconds) * 1000;
    map->OpenEvents(options.events, true);
    PlayInWindow(std::move(map), how);
    return tool::kAnswered;
}

int ShowMap(const MapOptions& options) {
    if (options.seconds && *options.seconds < 0)
        throw Failure(kWrongUsage, "--for", "\"" + std::to_string(*options.seconds) + "\" is negative");
    const double scale = ScaleOf(options);
    auto map = std::make_unique<LoadedMap>(options.site);
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
    map->MakeView();
    return options.screenshot ? TakePicture(options, *map, scale)
                              : OpenWindow(options, std::move(map), scale);
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
