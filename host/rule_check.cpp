// Checks of the names in rules. Tests: site_test.cpp.
#include "host/rule_check.h"

#include <set>

#include "host/address_pattern.h"
#include "host/device_table.h"
#include "host/rule_text.h"

namespace brindle::host {

namespace {

// What a person who writes rules most often forgets, apart from a wrong name.
constexpr const char* kQuoteIt = ": it stands for itself (a text is written in quotes)";

}  // namespace

std::string ProblemOfName(const PreparedRule& rule, std::size_t index, const CAddressOv& own,
                          const DeviceTable& devices) {
    const bool isOwn = !rule.NameAddress(index);
    const std::string name = "\"" + NameText(rule, index) + "\"";
    const std::string_view field = rule.Name(index).view();
    if (!devices.KnowsFieldSomewhere(field)) return "no device has the field " + name + kQuoteIt;
    const std::optional<std::uint32_t> device = DeviceOfName(rule, index, own);
    if (!device && isOwn)
        return name + " is a field of the object's own device, but the object has no full address";
    if (!device) return name + " asks for a device without a full address";
    if (!devices.Knows(*device))
        return name + " asks for " +
               (isOwn ? "the object's own device, which does not exist" : "a device that does not exist");
    if (!devices.KnowsField(*device, field))
        return "the device " + AddressText(CAddressOv(static_cast<unsigned long>(*device))) +
               " has no field \"" + std::string(field) + "\"" + kQuoteIt;
    return {};
}

std::vector<std::string> CheckRuleNames(const PreparedRule& rule, const CAddressOv& own,
                                        const DeviceTable& devices) {
    std::vector<std::string> problems;
    std::set<std::string> told;
    for (std::size_t i = 0; i < rule.NameCount(); ++i) {
        std::string problem = ProblemOfName(rule, i, own, devices);
        if (!problem.empty() && told.insert(problem).second) problems.push_back(std::move(problem));
    }
    return problems;
}

}  // namespace brindle::host
