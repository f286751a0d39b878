// brindle_soak: runs the example station for a long time on a virtual clock and says whether memory, descriptors and
// threads stay level. scripts/soak is the way to run it; docs/soak.md explains what it does.
//
// usage: brindle_soak SITE EVENTS [--leak memory|descriptors|threads]
//
// Exit 0: level and everything happened that should; 1: not; 2: wrong usage, or the site cannot be played.
#include <cstdio>
#include <cstring>
#include <exception>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/register_types.h"
#include "host/site_runner.h"
#include "tests/soak/soak_source.h"
#include "tests/soak/stub_programs.h"

namespace brindle::soak {
namespace {

// Counts what happens and keeps nothing of it but the first warning.
class Counts final : public host::RunSink {
  public:
    void Write(const host::RunRecord& record) override {
        const auto& kind = record["kind"].get_ref<const std::string&>();
        if (kind == "reload" && !IsNewReload(record)) return;
        ++m_kinds[kind];
        if (kind == "repeat") ++m_kinds["repeat " + record["what"].get_ref<const std::string&>()];
    }
    void Warn(const host::Problem& problem) override {
        if (!warning) warning = problem.Place() + ": " + problem.text;
    }
    unsigned long long Of(const char* kind) const {
        const auto found = m_kinds.find(kind);
        return found == m_kinds.end() ? 0 : found->second;
    }

    std::optional<std::string> warning;

  private:
    // A file that takes over in several objects at once counts once.
    bool IsNewReload(const host::RunRecord& record) {
        const std::string file = record["t"].dump() + record["file"].dump();
        return std::exchange(m_reloaded, file) != file;
    }

    std::map<std::string, unsigned long long> m_kinds;
    std::string m_reloaded;
};

// What is wrong with the soak as a whole; empty: nothing.
std::vector<std::string> Faults(const SoakSource& source, const SiteEdits& edits, const Counts& counts,
                                const StubPrograms& programs) {
    std::vector<std::string> faults = source.Watch().Rises();
    if (counts.warning) faults.push_back("warning: " + *counts.warning);
    for (const char* kind :
         {"repeat added", "repeat cancelled", "schedule", "variable", "send", "log", "unlock"})
        if (counts.Of(kind) == 0) faults.push_back(std::string("nothing happened of kind ") + kind);
    if (programs.starts == 0) faults.push_back("no program was started");
    if (counts.Of("reload") < static_cast<unsigned long long>(edits.Saved()))
        faults.push_back("of " + std::to_string(edits.Saved()) + " edits only " +
                         std::to_string(counts.Of("reload")) + " took over");
    return faults;
}

std::string Change(const char* name, std::uint64_t from, std::uint64_t to) {
    return std::string(name) + " " + std::to_string(from) + " -> " + std::to_string(to);
}

void PrintSummary(const SoakSource& source, const SiteEdits& edits, const Counts& counts,
                  const StubPrograms& programs, const std::vector<std::string>& faults) {
    const ResourceUse from = source.Watch().AfterWarmUp();
    const ResourceUse to = MeasureResources();
    std::string verdict = "level";
    for (const std::string& fault : faults) verdict = (verdict == "level" ? "" : verdict + "; ") + fault;
    std::printf(
        "soak: %llu events in %.0f s, %llu repeats added, %llu programs started, %d saves, %llu reloads; %s; "
        "%s; %s: %s\n",
        static_cast<unsigned long long>(source.Played()), source.Seconds(), counts.Of("repeat added"),
        static_cast<unsigned long long>(programs.starts), edits.Saved(), counts.Of("reload"),
        Change("heap KiB", from.heap / 1024, to.heap / 1024).c_str(),
        Change("descriptors", from.descriptors, to.descriptors).c_str(),
        Change("threads", from.threads, to.threads).c_str(), verdict.c_str());
}

int Soak(const std::string& studio, std::uint64_t events, const std::string& leak) {
    Leaks leaks(leak);
    SiteEdits edits(studio);
    StubPrograms programs;
    host::RegisterHostTypes();
    host::Site site;
    host::Problems problems;
    if (!host::LoadSite(edits.Folder(), site, problems))
        throw std::runtime_error(problems.at(0).Place() + ": " + problems.at(0).text);
    Counts counts;
    SoakPace pace;
    host::RunOptions options;
    options.reload = true;
    std::printf("%11s %9s %11s %13s %12s %8s\n", "events", "seconds", "heap KiB", "anonymous KiB",
                "descriptors", "threads");
    SoakSource source(events, site, pace, edits, leaks);
    std::vector<std::string> faults;
    {
        host::SiteRunner runner(site, source, counts, pace, options);
        runner.Run();
        faults = Faults(source, edits, counts, programs);
        PrintSummary(source, edits, counts, programs, faults);
    }
    return faults.empty() ? 0 : 1;
}

std::optional<std::uint64_t> Number(const char* text) {
    std::uint64_t number = 0;
    for (const char* at = text; *at; ++at) {
        if (*at < '0' || *at > '9' || number > 100'000'000'000) return {};
        number = number * 10 + static_cast<std::uint64_t>(*at - '0');
    }
    if (number < SoakSource::kFewestEvents) return {};
    return number;
}

int Main(int count, char** arguments) {
    const bool leak = count == 5 && std::strcmp(arguments[3], "--leak") == 0;
    const std::optional<std::uint64_t> events = count > 2 ? Number(arguments[2]) : std::nullopt;
    if (!events || (count != 3 && !leak)) {
        std::fprintf(
            stderr,
            "usage: brindle_soak SITE EVENTS [--leak memory|descriptors|threads]; at least %llu events\n",
            static_cast<unsigned long long>(SoakSource::kFewestEvents));
        return 2;
    }
    return Soak(arguments[1], *events, leak ? arguments[4] : "");
}

}  // namespace
}  // namespace brindle::soak

int main(int count, char** arguments) {
    try {
        return brindle::soak::Main(count, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "brindle_soak: %s\n", error.what());
        return 2;
    }
}
