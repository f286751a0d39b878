// brindle rule: evaluates rules, shows their reverse Polish text and their names, and checks files of them. Tests:
// command_rule_test.cpp.
#include <brindle/expressions/prepared_rule.h>
#include <brindle/framework/number_text.h>
#include <brindle/library/host_path_access.h>
#include <brindle/library/host_text.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "apps/brindle/cli.h"
#include "apps/brindle/command_rule_trace.h"
#include "apps/brindle/command_rule_values.h"
#include "apps/brindle/commands.h"
#include "host/rule_text.h"

namespace brindle::tool {
namespace {

constexpr std::uint64_t kMaxRuleFile = std::uint64_t{64} << 20;  // bytes

struct RuleOptions {
    std::string rule;
    std::vector<std::string> values;
    std::vector<std::string> files;
    bool upper = false;
    bool trace = false;
    bool json = false;
};

int Fail(const Result& fault) {
    Complain("rule", fault.text + " at column " + std::to_string(fault.column));
    return kFailed;
}

// Infinite and not-a-number have no form of their own in JSON.
nlohmann::ordered_json ToJson(double value) {
    if (std::isfinite(value)) return value;
    return PrintDouble(value);
}

nlohmann::ordered_json ToJson(const CCalculator::Literal& literal) {
    nlohmann::ordered_json json;
    json["type"] = host::LiteralTypeName(literal.GetType());
    json["text"] = TextToSystem(literal.AsString());
    json["bool"] = literal.AsBool();
    json["int"] = literal.AsInt();
    json["double"] = ToJson(literal.AsDouble());
    return json;
}

int RunEval(const RuleOptions& options) {
    RuleValues values;
    for (const std::string& value : options.values) values.Add(value);
    const CStringA text(options.rule);
    const PreparedRule rule(text, options.upper);
    RuleTrace trace(values);
    if (options.trace) RuleTrace::ShowTokens(text, options.upper);
    CCalculator::Literal result;
    if (!rule.Solve(values, result, options.trace ? &trace : nullptr)) return Fail(rule.Structure());
    if (options.json) {
        PrintUtf8(ToJson(result).dump());
    } else {
        Print(result.AsString());
    }
    return kAnswered;
}

int RunReversePolish(const RuleOptions& options) {
    const PreparedRule rule{CStringA(options.rule)};
    if (!rule.Conversion().ok()) return Fail(rule.Conversion());
    Print(rule.ReversePolish().view());
    return kAnswered;
}

int RunNames(const RuleOptions& options) {
    const CStringA text(options.rule);
    const PreparedRule rule(text, true);
    if (!rule.Conversion().ok()) return Fail(rule.Conversion());
    CList<CAddressOv> addresses;
    CList<CStringA> headers;
    CSolver().GetAddressesInRule(text, addresses);
    CSolver().GetHeadersInRule(text, headers);
    nlohmann::ordered_json json = {{"addresses", nlohmann::ordered_json::array()},
                                   {"headers", nlohmann::ordered_json::array()}};
    Columns columns;
    for (POSITION at = addresses.GetHeadPosition(); at;) {
        const std::string address = addresses.GetNext(at).GetString().str();
        json["addresses"].push_back(address);
        columns.Add({"address", address});
    }
    for (POSITION at = headers.GetHeadPosition(); at;) {
        const std::string header = headers.GetNext(at).str();
        json["headers"].push_back(TextToSystem(header));
        columns.Add({"header", header});
    }
    if (options.json) {
        PrintUtf8(json.dump());
    } else {
        for (const std::string& line : columns.Lines()) Print(line);
    }
    return kAnswered;
}

// Prints the problems of a file, one rule a line; empty lines are passed over. Returns whether there were any.
bool CheckFile(const std::string& file) {
    std::string bytes;
    if (const Result result = ReadHostFile(file, kMaxRuleFile, bytes); !result.ok())
        throw Failure(kWrongUsage, file, result.text);
    bool found = false;
    unsigned long number = 0;
    for (std::string_view rest = bytes; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        ++number;
        if (line.find_first_not_of(" \t\r") == std::string_view::npos) continue;
        const PreparedRule rule{CStringA(line)};
        if (rule.Structure().ok()) continue;
        found = true;
        Print(Place(file, number, rule.Structure().column) + ": " + rule.Structure().text);
    }
    return found;
}

int RunCheckRules(const RuleOptions& options) {
    bool found = false;
    for (const std::string& file : options.files) found = CheckFile(file) || found;
    return found ? kFailed : kAnswered;
}

void DeclareEval(Command& rules) {
    auto options = std::make_shared<RuleOptions>();
    Command& command = rules.Add("eval", "Commands", "evaluate a rule and print its result");
    command.Text("RULE", options->rule, "the rule");
    command.Options("--value", "[ADDRESS,]NAME=VALUE", options->values,
                    "the value of a name; with ADDRESS only where the rule has that address");
    command.Flag("--upper", options->upper, "read the rule and all values in upper case");
    command.Flag("--trace", options->trace, "show tokens, values and every step");
    command.Flag("--json", options->json, "print type, text and numbers as a JSON object");
    command.Note(
        "Exit 0 whatever the result is; an empty text prints an empty line. A rule that cannot be evaluated "
        "exits with 1 and the column of its fault. A name without a value stands for itself.");
    command.Example("brindle rule eval 'LEVEL > 10' --value LEVEL=12", "TRUE");
    command.Run([options] { return RunEval(*options); });
}

void DeclareReversePolish(Command& rules) {
    auto options = std::make_shared<RuleOptions>();
    Command& command = rules.Add("rpn", "Commands", "print a rule in reverse Polish order");
    command.Text("RULE", options->rule, "the rule");
    command.Example("brindle rule rpn '1 + 2 * 3'", "1 2 3 * +");
    command.Run([options] { return RunReversePolish(*options); });
}

void DeclareNames(Command& rules) {
    auto options = std::make_shared<RuleOptions>();
    Command& command =
        rules.Add("names", "Commands", "list the addresses and, in upper case, the names of a rule");
    command.Text("RULE", options->rule, "the rule");
    command.Flag("--json", options->json, "print two lists as a JSON object");
    command.Example("brindle rule names '0001:02:03,LEVEL > 10' --json",
                    "{\"addresses\":[\"0001:02:03\"],\"headers\":[\"LEVEL\"]}");
    command.Run([options] { return RunNames(*options); });
}

void DeclareCheckRules(Command& rules) {
    auto options = std::make_shared<RuleOptions>();
    Command& command = rules.Add("check", "Commands", "report the rules of files that cannot be evaluated");
    command.Texts("FILE", options->files, "files with one rule a line");
    command.Note("Prints FILE:LINE:COLUMN: TEXT for each problem; exit 1 when there is one.");
    command.Example("brindle rule check alarms.txt");
    command.Run([options] { return RunCheckRules(*options); });
}

}  // namespace

void DeclareRule(Command& tool) {
    Command& rules = tool.Add("rule", kGroupQuestions, "evaluate and inspect rules over values");
    DeclareEval(rules);
    DeclareReversePolish(rules);
    DeclareNames(rules);
    DeclareCheckRules(rules);
}

}  // namespace brindle::tool
