// The fields of maps. Tests: map_view_test.cpp.
#include "host/map_texts.h"

#include <brindle/macro/command_line.h>
#include <brindle/variables/hook/variable_manager_format_command_line_hook.h>

#include <stdexcept>
#include <string>

#include "host/words.h"

namespace brindle::host {

MapFields MapTexts::Fields(std::optional<std::uint32_t> device, const SiteObject* object) const {
    MapFields fields;
    if (object) fields.caption = object->plan.caption;
    fields.device = device;
    if (!device || !m_site.devices.Knows(*device)) return fields;
    const auto field = [&](const char* name) {
        std::string value;
        m_site.devices.Field(*device, name, value);
        return value;
    };
    if (const std::string caption = m_site.devices.Caption(*device); !caption.empty())
        fields.caption = caption;
    fields.text = field("Text");
    fields.help = field("User");
    const std::string value = field("Value");
    fields.r = value.empty() ? field("Header") : value;
    ParseInt(field("State"), fields.status);
    ParseInt(field("Zone"), fields.n);
    return fields;
}

CStringA MapTexts::Fill(const CStringA& text, const MapFields& fields, const SiteObject* object) const {
    if (text.view().find_first_of("%#{") == std::string_view::npos) return text;
    const VariableHookScope scope(object ? &object->scope : &m_site.scope);
    std::optional<FullAddress_t> address;
    if (fields.device) {
        address.emplace();
        CAddressOv(static_cast<unsigned long>(*fields.device)).GetFullAddressStruct(*address);
    }
    CStringA filled = text;
    try {
        FormatCommandLineEx(filled, address ? &*address : nullptr, m_site.plan.folder.c_str(), fields.caption,
                            fields.text, fields.help, fields.status, fields.r, fields.n, -1);
    } catch (const std::invalid_argument&) {
        return "?";  // the local time cannot be expressed
    }
    return filled;
}

bool MapTexts::TellsTime(const CStringA& text) noexcept {
    constexpr const char* kDates[] = {"%dd%",   "%MM%", "%yyyy%", "%ddd%", "%dddd%", "%MMM%",
                                      "%MMMM%", "%z%",  "%H%",    "%m%",   "%s%"};
    for (const char* date : kDates)
        if (text.view().find(date) != std::string_view::npos) return true;
    return false;
}

}  // namespace brindle::host
