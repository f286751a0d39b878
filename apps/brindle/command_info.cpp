// brindle info: what a report on this installation should say. Tests: tool_test.cpp.
#include <brindle/framework/number_text.h>
#include <brindle/library/library_info.h>
#include <brindle/platform/clock.h>

#include <CLI/Version.hpp>
#include <nlohmann/json.hpp>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"

namespace brindle::tool {
namespace {

using Json = nlohmann::ordered_json;

std::string TwoDigits(int number) {
    return (number < 10 ? "0" : "") + PrintInt(number);
}

// "+01:00", or "unknown" when the time zone cannot be told.
std::string UtcOffset() {
    LocalTime now;
    if (!CurrentClock().ToLocalTime(UnixSeconds(), now)) return "unknown";
    const int offset = now.utcOffsetSeconds < 0 ? -now.utcOffsetSeconds : now.utcOffsetSeconds;
    return (now.utcOffsetSeconds < 0 ? "-" : "+") + TwoDigits(offset / 3600) + ":" +
           TwoDigits(offset / 60 % 60);
}

std::string ToolLibraries() {
    return "CLI11 " CLI11_VERSION ", nlohmann-json " + std::to_string(NLOHMANN_JSON_VERSION_MAJOR) + "." +
           std::to_string(NLOHMANN_JSON_VERSION_MINOR) + "." + std::to_string(NLOHMANN_JSON_VERSION_PATCH);
}

Json ToJson(const LibraryInfo& info) {
    Json json;
    json["version"] = info.version;
    json["compiler"] = info.compiler;
    json["system"] = info.system;
    json["backend"] = info.backend;
    for (const LibraryPart& part : info.parts)
        json["services"].push_back(
            {{"service", part.service}, {"library", part.library}, {"version", part.version}});
    json["toolLibraries"] = ToolLibraries();
    json["codePage"] = info.codePage;
    json["utcOffset"] = UtcOffset();
    for (const LibraryLimit& limit : info.limits)
        json["limits"].push_back({{"name", limit.name}, {"value", limit.value}, {"unit", limit.unit}});
    return json;
}

void PrintText(const LibraryInfo& info) {
    Columns columns;
    columns.Add({"brindle", info.version});
    columns.Add({"compiler", info.compiler});
    columns.Add({"system", info.system});
    columns.Add({"backend", info.backend});
    for (const LibraryPart& part : info.parts)
        columns.Add({"  " + part.service, part.library + (part.version.empty() ? "" : " " + part.version)});
    columns.Add({"tool", ToolLibraries()});
    columns.Add({"code page", PrintUnsigned(info.codePage)});
    columns.Add({"time zone", "UTC" + UtcOffset()});
    columns.Add({"limits", ""});
    for (const LibraryLimit& limit : info.limits)
        columns.Add({"  " + limit.name, PrintUnsigned(limit.value) + " " + limit.unit});
    for (const std::string& line : columns.Lines()) Print(line);
}

int RunInfo(bool json) {
    const LibraryInfo info = DescribeLibrary();
    if (json) {
        PrintUtf8(ToJson(info).dump(-1, ' ', false, Json::error_handler_t::replace));
    } else {
        PrintText(info);
    }
    return kAnswered;
}

}  // namespace

void DeclareInfo(Command& tool) {
    auto json = std::make_shared<bool>(false);
    Command& command =
        tool.Add("info", kGroupQuestions, "print versions, backend, code page, time zone and limits");
    command.Flag("--json", *json, "print one JSON object");
    command.Note("Put its output into every report of a fault.");
    command.Example("brindle info");
    command.Run([json] { return RunInfo(*json); });
}

}  // namespace brindle::tool
