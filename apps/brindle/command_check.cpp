// brindle check: reports every problem of sites, behaviour lists and variables without running them.
// Tests: command_run_test.cpp.
#include <brindle/library/console.h>

#include <algorithm>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "host/register_types.h"
#include "host/site_check.h"

namespace brindle::tool {
namespace {

int RunCheck(const std::vector<std::string>& paths) {
    host::RegisterHostTypes();
    const host::CheckReport report = host::CheckPaths(paths);
    std::size_t problems = 0;
    for (const host::Problem& problem : report.problems) {
        const std::string place =
            Place(problem.file, std::max(problem.line, 1U), std::max(problem.column, 1U));
        if (problem.warning) {
            Complain(place, "warning: " + problem.text);
        } else {
            Print(place + ": " + problem.text);
            ++problems;
        }
    }
    FlushOutput();
    for (const host::Problem& problem : report.unopened) Complain(problem.Place(), problem.text);
    if (!report.unopened.empty()) return kWrongUsage;
    if (ErrorIsTerminal())
        Complain("check", std::to_string(report.files) + " files, " + std::to_string(problems) + " problems");
    return problems == 0 ? kAnswered : kFailed;
}

}  // namespace

void DeclareCheck(Command& tool) {
    auto paths = std::make_shared<std::vector<std::string>>();
    Command& check = tool.Add("check", kGroupStations,
                              "report what is wrong in sites and their files without running them");
    check.Texts("PATH", *paths,
                "a site's folder, a behaviour list, a variables file or a recording (.jsonl)");
    check.Note(
        "Prints one line FILE:LINE:COLUMN: TEXT for each problem: what is not well-formed, types and "
        "attributes "
        "nobody knows or can read, references no scope answers, fields nothing fills in. Exit 0 without "
        "problems, 1 with some, 2 when a PATH cannot be opened. Warnings go to the standard error and count "
        "nothing. Behaviour lists see the variables of the "
        "files "
        "given with them.");
    check.Example("brindle check examples/sites/studio", "checks every file of the station");
    check.Example("brindle check behaviours/router.xml variables.xml");
    check.Run([paths] { return RunCheck(*paths); });
}

}  // namespace brindle::tool
