// See create_expand.h. Tests: command_create_test.cpp.
#include "apps/brindle/create_expand.h"

#include <brindle/behaviour/action.h>
#include <brindle/behaviour/action_list.h>
#include <brindle/behaviour/trigger.h>
#include <brindle/behaviour/trigger_list.h>
#include <brindle/platform/clock.h>

#include <memory>

#include "apps/brindle/cli.h"
#include "apps/brindle/create_difference.h"
#include "apps/brindle/create_items.h"
#include "host/register_types.h"

namespace brindle::tool {
namespace {

constexpr std::uint64_t kProgressAfter = 1000;  // milliseconds
constexpr std::uint64_t kProgressEvery = 200;
constexpr std::size_t kLargestLoaded = 16U << 20;  // bytes: what XMLReader takes

struct ExpandOptions {
    std::string file;
    std::vector<std::string> pairs;
    std::optional<std::string> pairsFile;
    std::optional<std::string> out;
    std::optional<std::string> results;
    std::optional<std::string> diff;
    std::optional<std::string> log;
    bool strict = false;
};

class LoggingCreate final : public SysCreate {
  public:
    explicit LoggingCreate(const std::optional<std::string>& file) : m_file(file) {}

    void Log(const std::string& text) {
        if (m_file) AppendLog(m_file->c_str(), text.c_str());
    }
    // On the standard error and in the log.
    void Warn(const std::string& place, const std::string& why) {
        Complain(place, why);
        Log(place + ": " + why);
    }

  private:
    const std::optional<std::string>& m_file;
};

std::vector<FieldValue> AllPairs(const ExpandOptions& options) {
    std::vector<FieldValue> pairs;
    if (options.pairsFile) pairs = ReadPairs(*options.pairsFile, "FIELD,VALUE");
    for (const std::string& text : options.pairs) {
        Assignment pair = ToAssignment(text, "--pair");
        pairs.push_back({std::move(pair.name), std::move(pair.value)});
    }
    return pairs;
}

// Warns of the elements nobody registered; the number of actions among them.
std::size_t WarnOfUnknownTypes(LoggingCreate& create, const std::string& file) {
    XMLReader reader;
    Result result;
    std::size_t actions = 0;
    if (!reader.LoadPositioned(file.c_str(), result) || !reader.EnterSection("BehaviourList", true)) return 0;
    ForEachItem(reader, [&](const ListItem& item, XMLReader& at) {
        const bool known =
            item.isTrigger
                ? std::unique_ptr<CCommandTrigger>(CCommandTriggerList::CreateObject(item.name, 0)) != nullptr
                : std::unique_ptr<CCommandAction>(CCommandActionList::CreateObject(item.name, 0)) != nullptr;
        if (known) return;
        std::uint32_t line = 0, column = 0;
        at.GetPosition(line, column);
        create.Warn(Place(file, line, column), (item.isTrigger ? "trigger type \"" : "action type \"") +
                                                   item.name.str() + "\" is unknown: it is left out");
        actions += item.isTrigger ? 0 : 1;
    });
    return actions;
}

bool IsTemplate(const ListItem& item, XMLReader& reader) {
    if (item.isTrigger) return false;
    const std::unique_ptr<CCommandAction> action(CCommandActionList::CreateObject(item.name, 0));
    if (!action) return false;
    action->Load(reader);
    return action->IsTemplate();
}

// Warns of items of the expansion that still hold a placeholder and are no templates; their number.
std::size_t WarnOfPlaceholders(LoggingCreate& create, const std::string& file, const CStringA& expanded) {
    XMLReader reader;
    CStringA unused;
    std::size_t left = 0;
    if (expanded.str().size() > kLargestLoaded || !reader.LoadFromString(expanded, unused) ||
        !reader.EnterSection("BehaviourList", true)) {
        create.Warn(file, "the expansion has more than 16 MiB: nothing loads it");
        return 1;
    }
    ForEachItem(reader, [&](const ListItem& item, XMLReader& at) {
        std::string markup;
        at.ReadXML(markup);
        for (const char* placeholder : {"%OBJFLD%", "%OBJVAL%"}) {
            if (markup.find(placeholder) == std::string::npos || IsTemplate(item, at)) continue;
            create.Warn(file, "behaviour " + std::to_string(item.behaviour) + ": \"" + item.name.str() +
                                  "\" still holds \"" + placeholder + "\"");
            ++left;
        }
    });
    return left;
}

std::size_t ResultCount(const CStringA& results) {
    std::size_t count = 0;
    for (std::size_t at = results.str().find("<Result "); at != std::string::npos;
         at = results.str().find("<Result ", at + 1))
        ++count;
    return count;
}

int RunExpand(const ExpandOptions& options) {
    host::RegisterHostTypes();
    LoggingCreate create(options.log);
    const std::vector<FieldValue> pairs = AllPairs(options);
    CStringA expanded;
    try {
        expanded = ExpandOrFail(create, options.file, pairs);
    } catch (const Failure& failure) {
        create.Log(failure.What() + ": " + failure.Why());
        throw;
    }
    std::size_t problems = WarnOfUnknownTypes(create, options.file);
    problems += WarnOfPlaceholders(create, options.file, expanded);
    create.Log(options.file + ": " + std::to_string(pairs.size()) + " pairs, " +
               std::to_string(ResultCount(create.ResultInfo())) + " results");
    if (options.strict && problems > 0) return kFailed;
    // Before anything is written: the old expansion may be the file to be written.
    const bool differs = options.diff && PrintDifference(*options.diff, expanded.str());
    if (options.out) WriteDocument(*options.out, expanded.view());
    if (options.results) WriteDocument(*options.results, create.ResultInfo().view());
    if (!options.out && !options.diff) Print(expanded.view());
    return differs ? kFailed : kAnswered;
}

}  // namespace

CStringA ExpandOrFail(SysCreate& create, const std::string& file, const std::vector<FieldValue>& pairs) {
    CStringArray fields;
    CStringArray values;
    for (const FieldValue& pair : pairs) {
        fields.Add(CStringA(pair.field));
        values.Add(CStringA(pair.value));
    }
    const std::uint64_t begun = CurrentClock().MonotonicMilliseconds();
    std::uint64_t shown = 0;
    const auto progress = [&](std::size_t results) {
        const std::uint64_t now = CurrentClock().MonotonicMilliseconds();
        if (now - begun < kProgressAfter || now - shown < kProgressEvery) return;
        shown = now;
        ShowProgress(file + ": " + std::to_string(results) + " results");
    };
    CStringA expanded;
    const Result result = create.ExpandPositioned(CStringA(ReadDocument(file, "BehaviourList")), fields,
                                                  values, expanded, progress);
    if (shown > 0) ShowProgress("");
    if (!result.ok()) throw Failure(kWrongUsage, Place(file, result.line, result.column), result.text);
    return expanded;
}

void DeclareExpand(Command& create) {
    auto options = std::make_shared<ExpandOptions>();
    Command& command = create.Add("expand", "Commands", "expand a template with fields and values");
    command.Text("TEMPLATE", options->file, "the template, a behaviour list");
    command.Options("--pair", "FIELD=VALUE", options->pairs, "a field and its value; may be repeated");
    command.Option("--pairs", "FILE", options->pairsFile,
                   "a CSV file of FIELD,VALUE lines; they come before --pair");
    command.Option("--out", "FILE", options->out, "write the behaviour list to a file");
    command.Option("--results", "FILE", options->results, "write the results list to a file");
    command.Option("--diff", "OLD", options->diff,
                   "show what changes against an earlier expansion; exit 1 if anything");
    command.Flag("--strict", options->strict,
                 "exit 1, and write nothing, when an action type is unknown or a placeholder is left over");
    command.Option("--log", "FILE", options->log, "add what was done, and every warning, to a log file");
    command.Note(
        "The list goes to the standard output unless --out or --diff is given. Files are UTF-8. Of the CSV "
        "file, RFC "
        "4180 tells the form; it has no heading line.");
    command.Example(
        "brindle create expand examples/system-creation/transmitter.xml --pair F1=V1 --pair F2=V2",
        "prints the list with both copies");
    command.Example(
        "brindle create expand transmitter.xml --pairs values.csv --diff tx.xml --out tx.xml --results "
        "results.xml",
        "says what is new, then writes it");
    command.Run([options] { return RunExpand(*options); });
}

}  // namespace brindle::tool
