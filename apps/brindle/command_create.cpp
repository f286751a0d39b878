// brindle create: what system creation makes of a template, before anybody uses it. Tests: command_create_test.cpp.
#include <brindle/library/host_text.h>
#include <brindle/syscreate/sys_create.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/create_expand.h"
#include "apps/brindle/create_files.h"
#include "host/csv_text.h"
#include "host/register_types.h"

namespace brindle::tool {
namespace {

struct FieldsOptions {
    std::string unit;
    std::string text;
};

int RunFields(const FieldsOptions& options) {
    SysCreate create;
    const CStringA results = create.CreateResultsForStringsOfFields(options.unit, options.text);
    const std::size_t open = options.text.find('#');
    const bool hasField = open != std::string::npos && options.text.find('#', open + 1) != std::string::npos;
    if (hasField && results.Find("<Result ") < 0)
        throw Failure(kWrongUsage, "TEXT", "more than 1000000 fields, or a character that XML cannot hold");
    Print(results.view());
    return kAnswered;
}

struct TriggersOptions {
    std::string file;
    bool json = false;
};

// The block that a result filled, with its name; null for a result that fills none.
struct AlarmBlock {
    const char* name;
    int code;
    int mode;
    int value;
    const CStringA* field;
};

constexpr int kNoType = std::numeric_limits<int>::min();

AlarmBlock BlockOf(const SvirtAlarmTrigData& record) {
    if (!record.stateField.IsEmpty())
        return {"state", record.stateCode, record.stateMode, record.stateValue, &record.stateField};
    if (!record.captionField.IsEmpty())
        return {"caption", record.captionCode, record.captionMode, record.captionValue, &record.captionField};
    if (!record.maskField.IsEmpty())
        return {"mask", record.maskCode, record.maskMode, record.maskValue, &record.maskField};
    return {nullptr, 0, 0, 0, nullptr};
}

std::string JsonLine(const SvirtAlarmTrigData& record) {
    nlohmann::ordered_json json;
    if (record.type != kNoType) json["type"] = record.type;
    json["unit"] = TextToSystem(record.unit.view());
    json["header"] = TextToSystem(record.header.view());
    if (const AlarmBlock block = BlockOf(record); block.name)
        json[block.name] = {{"code", block.code},
                            {"mode", block.mode},
                            {"value", block.value},
                            {"field", TextToSystem(block.field->view())}};
    return json.dump();
}

std::vector<std::string> Cells(const SvirtAlarmTrigData& record) {
    std::vector<std::string> cells = {record.type == kNoType ? "-" : std::to_string(record.type),
                                      record.unit.str(), record.header.str()};
    if (const AlarmBlock block = BlockOf(record); block.name)
        cells.push_back(std::string(block.name) + " " + std::to_string(block.code) + " " +
                        std::to_string(block.mode) + " " + std::to_string(block.value) + " " +
                        block.field->str());
    return cells;
}

int RunTriggers(const TriggersOptions& options) {
    SysCreate create;
    if (!create.CreateVirtualAlarmTriggerList(CStringA(ReadDocument(options.file, "ResultsList"))))
        throw Failure(kWrongUsage, options.file, "cannot be read as a results list");
    Columns columns;
    SvirtAlarmTrigData record;
    for (record.type = kNoType; create.GetNextVirtualAlarmTrigger(record);
         record = {}, record.type = kNoType) {
        if (options.json)
            PrintUtf8(JsonLine(record));
        else
            columns.Add(Cells(record));
    }
    for (const std::string& line : columns.Lines()) Print(line);
    return kAnswered;
}

struct MaskOptions {
    std::string file;
    std::string found;
};

int RunMask(const MaskOptions& options) {
    host::RegisterHostTypes();
    SysCreate create;
    ExpandOrFail(create, options.file, {});
    CMapStringToInt all;
    for (const FieldValue& pair : ReadPairs(options.found, "UNIT,HEADER")) {
        const CStringA key(pair.field + pair.value);
        CMapStringToInt one;
        one[key] = 1;
        if (!all.PLookup(key) && create.CheckMaskResults(one)) Print(host::CsvText({pair.field, pair.value}));
        all[key] = 1;
    }
    const bool unexpected = create.CheckMaskResults(all);
    if (unexpected) Complain(options.found, "holds combinations that the template does not produce");
    return unexpected ? kFailed : kAnswered;
}

void DeclareFields(Command& create) {
    auto options = std::make_shared<FieldsOptions>();
    Command& command = create.Add("fields", "Commands", "make a results list of the #name# fields of a text");
    command.Text("UNIT", options->unit, "the unit of all results");
    command.Text("TEXT", options->text, "the text with its fields");
    command.Example("brindle create fields 'Camera 1' 'play #Clip#'",
                    "a \"ResultsList\" with one caption result, \"Clip\"");
    command.Run([options] { return RunFields(*options); });
}

void DeclareTriggers(Command& create) {
    auto options = std::make_shared<TriggersOptions>();
    Command& command = create.Add("triggers", "Commands", "list the alarm records of a results list");
    command.Text("RESULTS", options->file, "a results list, as expand --results writes it");
    command.Flag("--json", options->json, "print one JSON object for each record");
    command.Note(
        "Prints type, unit, header and the block the type fills: its name, code, mode, value and field. "
        "\"-\" is a "
        "result without a type, which fills no block.");
    command.Example("brindle create triggers results.xml --json");
    command.Run([options] { return RunTriggers(*options); });
}

void DeclareMask(Command& create) {
    auto options = std::make_shared<MaskOptions>();
    Command& command = create.Add("mask", "Commands", "list found masks that a template does not produce");
    command.Text("TEMPLATE", options->file, "the template, a behaviour list");
    command.Text("FOUND", options->found, "the combinations found: a CSV file of UNIT,HEADER lines");
    command.Note("Exit 1 when there is one. A mask of a whole unit has the header \"*\".");
    command.Example("brindle create mask transmitter.xml found.csv");
    command.Run([options] { return RunMask(*options); });
}

void DeclareDynamic(Command& create) {
    auto text = std::make_shared<std::string>();
    Command& command =
        create.Add("dynamic", "Commands", "say whether a text needs formatting for each object");
    command.Text("TEXT", *text, "a text that may hold fields");
    command.Note("Prints yes or no; exit 0 for yes, 1 for no.");
    command.Example("brindle create dynamic 'level {x}'", "yes");
    command.Run([text] {
        const bool dynamic = SysCreate().ContainsDynamicField(CStringA(*text));
        Print(dynamic ? "yes" : "no");
        return dynamic ? kAnswered : kFailed;
    });
}

}  // namespace

void DeclareCreate(Command& tool) {
    Command& create =
        tool.Add("create", kGroupStations, "expand templates of new systems, read their results");
    DeclareExpand(create);
    DeclareFields(create);
    DeclareTriggers(create);
    DeclareMask(create);
    DeclareDynamic(create);
}

}  // namespace brindle::tool
