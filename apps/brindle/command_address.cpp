// brindle address: the canonical text of a device address. Tests: tool_test.cpp.
#include <brindle/address/address_ov.h>
#include <brindle/address/full_address.h>
#include <brindle/framework/number_text.h>

#include <nlohmann/json.hpp>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"

namespace brindle::tool {
namespace {

struct AddressOptions {
    std::string text;
    std::optional<std::string> fallback;
    bool json = false;
};

std::uint32_t HexNumber(const CStringA& digits) {
    std::string_view text = digits.view();
    std::uint32_t number = 0;
    ScanHex(text, number);
    return number;
}

// The parts as the address holds them: an open one with its number 0, one that is too large uncut.
nlohmann::ordered_json ToJson(CAddressOv& address) {
    nlohmann::ordered_json json;
    json["text"] = address.GetString().str();
    json["net"] = HexNumber(address.GetNetString());
    json["unit"] = HexNumber(address.GetUnitString());
    json["port"] = HexNumber(address.GetPortString());
    json["netDeferred"] = address.IsNetDeferred();
    json["unitDeferred"] = address.IsUnitDeferred();
    json["portDeferred"] = address.IsPortDeferred();
    json["packed"] = address.GetDWord();
    return json;
}

int RunAddress(const AddressOptions& options) {
    FullAddress_t fallback{};
    if (options.fallback) fallback = ToFullAddress(*options.fallback, "--default");
    CAddressOv address;
    if (!address.SetAddress(options.text.c_str())) {
        Complain("\"" + options.text + "\"", "no address (net:unit:port in hexadecimal)");
        return kFailed;
    }
    FullAddress_t full{};
    address.GetFullAddressStruct(full, fallback);
    CAddressOv completed(full);
    if (!options.json) {
        Print((options.fallback ? completed : address).GetString().view());
        return kAnswered;
    }
    nlohmann::ordered_json json = ToJson(address);
    if (options.fallback) json["completed"] = completed.GetString().str();
    PrintUtf8(json.dump());
    return kAnswered;
}

}  // namespace

void DeclareAddress(Command& tool) {
    auto options = std::make_shared<AddressOptions>();
    Command& command = tool.Add("address", kGroupQuestions, "print the canonical text of a device address");
    command.Text("TEXT", options->text,
                 "net:unit:port in hexadecimal; a part that is empty or \"?\" is open");
    command.Option("--default", "ADDRESS", options->fallback, "fill the open parts from this address");
    command.Flag("--json", options->json, "print the parts as a JSON object");
    command.Note(
        "Open parts print as 0 unless --default fills them. A text that is no address exits with 1.");
    command.Example("brindle address 12:7:4", "0012:07:04");
    command.Example("brindle address 12:?:4 --default 1:7:1", "0012:07:04");
    command.Run([options] { return RunAddress(*options); });
}

}  // namespace brindle::tool
