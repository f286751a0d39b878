// A written site played on the virtual clock, with every line of the run.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "host/register_types.h"
#include "host/site_runner.h"
#include "host/written_site_test.h"

namespace brindle::host {

class Lines final : public RunSink {
  public:
    void Write(const RunRecord& record) override { records.push_back(record); }
    void Warn(const Problem& problem) override { warnings.push_back(problem.Place() + ": " + problem.text); }

    // The values of `key` in all records of a kind, joined by "|".
    std::string All(const char* kind, const char* key) const {
        std::string text;
        bool first = true;
        for (const RunRecord& record : records) {
            if (record["kind"] != kind) continue;
            if (!std::exchange(first, false)) text += "|";
            if (record.contains(key))
                text += record[key].is_string() ? record[key].get<std::string>() : record[key].dump();
        }
        return text;
    }
    std::string Dump() const {
        std::string text;
        for (const RunRecord& record : records) text += RecordLine(record) + "\n";
        return text;
    }

    std::vector<RunRecord> records;
    std::vector<std::string> warnings;
};

struct Played {
    Lines lines;
    std::unique_ptr<Site> site = std::make_unique<Site>();
};

inline Played RunEvents(const WrittenSite& written, const std::string& events,
                        const RunOptions& options = {}) {
    RegisterHostTypes();
    Played played;
    Problems problems;
    EXPECT_TRUE(LoadSite(written.Folder(), *played.site, problems))
        << (problems.empty() ? "" : problems[0].text);
    std::istringstream input(events);
    EventReader reader(input, "events");
    FastPace pace(played.site->plan.start);
    SiteRunner(*played.site, reader, played.lines, pace, options).Run();
    return played;
}

}  // namespace brindle::host
