// Checks of action texts. "%" and "#" are looked at in what the references leave, as the formatter does.
// Tests: site_test.cpp.
#include "host/text_check.h"

#include <brindle/address/address_ov.h>
#include <brindle/variables/variable_manager.h>

#include <algorithm>
#include <string_view>

#include "host/device_table.h"

namespace brindle::host {

namespace {

void AddOnce(std::vector<std::string>& problems, std::string problem) {
    if (std::find(problems.begin(), problems.end(), problem) == problems.end())
        problems.push_back(std::move(problem));
}

// Problems with braces that stand for nothing; "}" too many cuts a text that has references.
void CheckBraces(const CStringA& text, std::vector<std::string>& problems) {
    int open = 0;
    for (const char c : text.view()) {
        if (c == '{') ++open;
        if (c != '}') continue;
        if (open == 0) {
            AddOnce(problems, "a \"}\" without \"{\" before it: the rest of the text is dropped");
            return;
        }
        --open;
    }
    if (open > 0) AddOnce(problems, "a \"{\" is never closed");
}

// The references the scopes left, innermost first.
void CheckReferences(std::string text, const std::string& scopes, std::vector<std::string>& problems) {
    for (std::size_t close = text.find('}'); close != std::string::npos; close = text.find('}')) {
        const std::size_t open = text.rfind('{', close);
        if (open == std::string::npos) return;
        const std::string reference = text.substr(open, close - open + 1);
        AddOnce(problems, "\"" + reference + "\" is not resolved (searched: " +
                              (scopes.empty() ? "no scope" : scopes) + ")");
        text.erase(open, close - open + 1);
    }
}

constexpr bool IsLetter(char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// The length of the field that begins with the "%" at the front, 0 when it is none.
std::size_t PercentField(std::string_view text) noexcept {
    constexpr std::string_view kDates[] = {"%dd%",   "%MM%", "%yyyy%", "%ddd%", "%dddd%", "%MMM%",
                                           "%MMMM%", "%z%",  "%H%",    "%m%",   "%s%"};
    constexpr std::string_view kArguments = "nqaNUPpcthijvsr";
    for (const std::string_view date : kDates)
        if (text.starts_with(date)) return date.size();
    return text.size() > 1 && kArguments.find(text[1]) != std::string_view::npos ? 2 : 0;
}

void CheckPercent(std::string text, std::vector<std::string>& problems) {
    // "%%" is set aside first, wherever it stands.
    for (std::size_t at = text.find("%%"); at != std::string::npos; at = text.find("%%", at + 2))
        text.replace(at, 2, "  ");
    for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at)) {
        const std::string_view rest = std::string_view(text).substr(at);
        const std::size_t field = PercentField(rest);
        if (field == 0 && rest.size() > 1 && IsLetter(rest[1]))
            AddOnce(problems, "no formatter knows the field \"" + std::string(rest.substr(0, 2)) + "\"");
        at += std::max<std::size_t>(field, 1);
    }
}

void CheckHashField(const std::string& body, const DeviceTable& devices, std::vector<std::string>& problems) {
    const std::size_t comma = body.find(',');
    CAddressOv address;
    if (comma == std::string::npos || !address.SetAddress(body.substr(0, comma).c_str())) {
        if (!devices.KnowsFieldSomewhere(body))
            AddOnce(problems, "no device has the field \"#" + body + "#\"");
        return;
    }
    const std::string name = body.substr(comma + 1);
    if (address.IsDeferred()) {
        if (!devices.KnowsFieldSomewhere(name))
            AddOnce(problems, "no device has the field \"#" + body + "#\"");
    } else if (!devices.Knows(address.GetDWord())) {
        AddOnce(problems, "\"#" + body + "#\" asks for a device that does not exist");
    } else if (!devices.KnowsField(address.GetDWord(), name)) {
        AddOnce(problems, "the device of \"#" + body + "#\" has no field \"" + name + "\"");
    }
}

void CheckHashes(const std::string& text, const DeviceTable* devices, std::vector<std::string>& problems) {
    std::size_t open = text.find('#');
    while (open != std::string::npos) {
        const std::size_t close = text.find('#', open + 1);
        if (close == std::string::npos) {
            AddOnce(problems, "a \"#\" has no partner");
            return;
        }
        if (devices) CheckHashField(text.substr(open + 1, close - open - 1), *devices, problems);
        open = text.find('#', close + 1);
    }
}

}  // namespace

std::vector<std::string> CheckText(const CStringA& text, const TextSurroundings& surroundings) {
    std::vector<std::string> problems;
    CStringA resolved = text;
    if (VariableManager::containsVariable(text)) {
        CheckBraces(text, problems);
        if (surroundings.scope) surroundings.scope->resolve(resolved);
        CheckReferences(resolved.str(), surroundings.scopes, problems);
    }
    CheckPercent(resolved.str(), problems);
    CheckHashes(resolved.str(), surroundings.devices, problems);
    return problems;
}

}  // namespace brindle::host
