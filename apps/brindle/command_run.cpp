// brindle run: plays events into a site and shows what its behaviours decide and do. Tests: command_run_test.cpp.
#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/play_input.h"
#include "apps/brindle/run_output.h"
#include "host/site_runner.h"

namespace brindle::tool {
namespace {

struct PlayOptions {
    std::string site;
    std::optional<std::string> events;
    std::optional<int> seconds;
    std::optional<std::string> expect;
    bool fast = false;
    bool dryRun = false;
    bool trace = false;
    bool json = false;
};

std::unique_ptr<RunOutput> MakeOutput(const PlayOptions& options, const host::Site& site) {
    const bool live = !options.fast;
    if (options.json) return std::make_unique<JsonOutput>(live);
    return std::make_unique<TextOutput>(live, site);
}

void Play(const PlayOptions& options, host::Site& site, host::EventSource& source, RunOutput& output) {
    host::RunOptions how;
    how.dryRun = options.dryRun;
    how.trace = options.trace;
    how.reload = !options.fast;
    if (options.seconds) how.limit = static_cast<std::uint64_t>(*options.seconds) * 1000;
    std::optional<host::FastPace> fast;
    std::optional<host::RealPace> real;
    host::RunPace* pace = nullptr;
    if (options.fast)
        pace = &fast.emplace(site.plan.start);
    else
        pace = &real.emplace();
    host::SiteRunner(site, source, output, *pace, how).Run();
}

int RunSite(const PlayOptions& options) {
    if (options.seconds && *options.seconds < 0)
        throw Failure(kWrongUsage, "--for", "\"" + std::to_string(*options.seconds) + "\" is negative");
    host::Site site;
    LoadOrFail(options.site, site);
    EventInput input(options.events, site, !options.fast);
    if (!options.expect) {
        Play(options, site, input.Source(), *MakeOutput(options, site));
        return kAnswered;
    }
    ExpectOutput output(*options.expect);
    if (!options.fast)
        Complain("--expect", "without --fast the times of the run are those of the real clock");
    Play(options, site, input.Source(), output);
    return output.Compare() ? kAnswered : kFailed;
}

}  // namespace

void DeclareRun(Command& tool) {
    auto options = std::make_shared<PlayOptions>();
    Command& run = tool.Add("run", kGroupStations, "play events into a site and show what its behaviours do");
    run.Text("SITE", options->site, "the folder of the site, the one that holds site.ini");
    run.Option("--events", "FILE", options->events,
               "events as JSON lines, \"-\" for the standard input; without it the site's own recording");
    run.Option("--for", "SECONDS", options->seconds,
               "run that long; without it until the events or the recording end");
    run.Flag("--fast", options->fast, "do not wait: a virtual clock jumps from one due time to the next");
    run.Flag("--dry-run", options->dryRun, "actions only say what they would do");
    run.Flag("--trace", options->trace,
             "say why: also triggers that did not fire and actions that did not run");
    run.Option("--expect", "FILE", options->expect,
               "compare the run's JSON lines with a file; print the difference and exit 1 when there is one");
    run.Flag("--json", options->json, "print one JSON object for each thing that happens");
    run.Note(
        "The keys of events and of printed lines are in docs/sites.md. A line that is no event is reported, "
        "and "
        "the run goes on. A fast run begins at the site's Start and its zone is UTC, so it prints the same "
        "lines every time.");
    run.Example("brindle run examples/sites/studio", "plays the example station");
    run.Example("brindle run examples/sites/studio --fast --trace", "at once, with every reason");
    run.Example("brindle run examples/sites/studio --fast --expect examples/sites/studio/expected.jsonl",
                "tests the behaviours of the station");
    run.Run([options] { return RunSite(*options); });
}

}  // namespace brindle::tool
