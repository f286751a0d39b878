// Tests: settings_test.cpp.
#include "host/settings_site.h"

#include <brindle/library/host_path_access.h>
#include <brindle/skin/ov_skin.h>
#include <brindle/xml/xml_reader.h>

#include <algorithm>
#include <utility>

#include "host/host_files.h"
#include "host/ini_text.h"
#include "host/poll_plan.h"
#include "host/settings_text.h"
#include "host/skin_document.h"
#include "host/words.h"

namespace brindle::host {
namespace {

struct Word {
    const char* written;
    const char* said;
};

constexpr Word kStates[] = {
    {"default", "Normal"},       {"pressed", "Pressed"},      {"checked", "Checked"},
    {"disabled", "Disabled"},    {"black", "State black"},    {"green", "State green"},
    {"yellow", "State yellow"},  {"red", "State red"},        {"masked", "Masked"},
    {"focus", "With the focus"}, {"hover", "Under the mouse"}};
constexpr Word kElements[] = {{"button", "Button"},
                              {"radiobox", "Radio box"},
                              {"checkbox", "Check box"},
                              {"button_label", "Button, its text"},
                              {"radiobox_label", "Radio box, its text"},
                              {"mark", "Mark"},
                              {"frame", "Frame"},
                              {"general", "General"},
                              {"TimeFont1", "Clock, its text"}};
constexpr Word kAttributes[] = {{"bordercolour", "border colour"},
                                {"fillcoloura", "first fill colour"},
                                {"fillcolourb", "second fill colour"},
                                {"colour", "colour"}};

template <std::size_t N>
std::string Said(const Word (&words)[N], const std::string& written) {
    for (const Word& word : words)
        if (written == word.written) return word.said;
    return written;
}

std::uint32_t DigitOf(char c) noexcept {
    return static_cast<std::uint32_t>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
}

// Of a text that is one.
std::uint32_t ColourOf(const std::string& text) noexcept {
    const std::size_t first = text.starts_with('#') ? 1 : 0;
    const auto channel = [&](std::size_t at) {
        return DigitOf(text[first + at]) << 4 | DigitOf(text[first + at + 1]);
    };
    return channel(0) | channel(2) << 8 | channel(4) << 16;
}

// The file as text; false with the reason in `missing`.
bool ReadFor(const std::string& path, const char* key, std::string& bytes, std::string& missing) {
    if (path.empty())
        missing = std::string("The site names no \"") + key + "\" file in its site.ini.";
    else if (const std::string why = ReadSiteFile(path, bytes); !why.empty())
        missing = path + ": " + why;
    return missing.empty();
}

// One of the "whole number from" texts.
std::string CheckNumber(const std::string& text, const char* what, PollRange range) {
    int number = 0;
    if (ParseInt(text, number) && number >= range.lowest && number <= range.highest) return {};
    return std::string(what) + ": \"" + text + "\" is no whole number from " + std::to_string(range.lowest) +
           " to " + std::to_string(range.highest) + ".";
}

}  // namespace

std::string SkinColourText(std::uint32_t colour) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text = "#";
    for (const int bits : {4, 0, 12, 8, 20, 16}) text += kDigits[colour >> bits & 0xF];
    return text;
}

std::string EditSiteFile(const std::string& path, const std::function<std::string(std::string&)>& edit) {
    std::string before;
    std::string why = ReadSiteFile(path, before);
    if (!why.empty()) return path + ": " + why;
    std::string after = before;
    why = edit(after);
    if (!why.empty()) return path + ": " + why;
    if (after == before) return {};
    why = WriteHostFile(path, after).text;
    return why.empty() ? why : path + ": " + why;
}

SkinSettings::SkinSettings(const SitePlan& plan) : m_path(plan.skin) {
    std::string bytes;
    if (!ReadFor(m_path, "Skin", bytes, m_missing)) return;
    XMLReader reader;
    Result result;
    OVSkin skin;
    if (!reader.LoadPositioned(m_path.c_str(), result))
        m_missing = Problem{m_path, result.line, result.column, ""}.Place() + ": " + result.text;
    else if (!skin.LoadFromFile(m_path))
        m_missing = m_path + ": the document is no \"skin\".";
    std::vector<SkinValue> values;
    if (!m_missing.empty() || !ListSkinValues(skin, values)) return;
    for (const SkinValue& value : values) {
        // Numbers may have six digits, too.
        const bool named = value.attribute.find("colour") != std::string::npos;
        if (!IsSkinColour(value.text) || (!named && value.text[0] != '#')) continue;
        const std::uint32_t colour = ColourOf(value.text);
        colours.push_back({value.mode, value.element, value.attribute, colour, colour,
                           Said(kElements, value.element) + ", " + Said(kAttributes, value.attribute),
                           Said(kStates, value.mode)});
    }
    if (colours.empty()) m_missing = m_path + ": the skin says no colour of its own.";
}

std::string SkinSettings::Save() {
    const auto differs = [](const Colour& colour) { return colour.colour != colour.saved; };
    if (std::none_of(colours.begin(), colours.end(), differs)) return {};
    const std::string why = EditSiteFile(m_path, [&](std::string& bytes) {
        std::string fault;
        for (const Colour& colour : colours)
            if (differs(colour) && fault.empty()) {
                fault = SetSkinText(bytes, colour.mode, colour.element, colour.attribute,
                                    SkinColourText(colour.colour));
                if (!fault.empty()) fault = colour.what + ", " + colour.state + ": " + fault;
            }
        return fault;
    });
    if (!why.empty()) return why;
    for (Colour& colour : colours) colour.saved = colour.colour;
    return {};
}

DirectorySettings::DirectorySettings(const SitePlan& plan) : m_path(plan.macros) {
    std::string bytes;
    if (!ReadFor(m_path, "Macros", bytes, m_missing)) return;
    Problems unused;
    const IniText ini(bytes, m_path, unused);
    for (const char* key : {"LastSchematicDir", "LastComponentDir", "LastGraphicsDir"}) {
        const IniSection* section = ini.Find("Directories");
        const IniKey* found = section ? section->Find(key) : nullptr;
        const std::string value = found ? found->value : std::string();
        last.push_back({"Directories", key, value, value});
    }
    if (const IniSection* paths = ini.Find("SearchPath"))
        for (const IniKey& key : paths->keys)
            searchPaths.push_back({paths->name, key.name, key.value, key.value});
}

std::string DirectorySettings::Check(const Directory& directory) {
    if (directory.value.find_first_of("\r\n") != std::string::npos)
        return directory.key + ": a directory stands on one line.";
    if (directory.section != "Directories" || directory.value.size() <= kLongest) return {};
    return directory.key + ": the directory has " + std::to_string(directory.value.size()) +
           " characters, more than " + std::to_string(kLongest) + ".";
}

std::string DirectorySettings::Save() {
    std::vector<Directory*> changed;
    for (std::vector<Directory>* const group : {&last, &searchPaths})
        for (Directory& directory : *group) {
            if (std::string why = Check(directory); !why.empty()) return why;
            directory.value = std::string(Trimmed(directory.value));
            if (directory.value != directory.saved) changed.push_back(&directory);
        }
    if (changed.empty()) return {};
    std::string why = EditSiteFile(m_path, [&](std::string& bytes) {
        for (const Directory* directory : changed)
            SetIniValue(bytes, directory->section, directory->key, directory->value);
        return std::string();
    });
    for (Directory* directory : changed)
        if (why.empty()) directory->saved = directory->value;
    return why;
}

PollSettings::PollSettings(const SitePlan& plan) : m_path(plan.devices) {
    std::string bytes;
    if (!ReadFor(m_path, "Devices", bytes, m_missing)) return;
    Problems unused;
    const IniText ini(bytes, m_path, unused);
    for (const IniSection& section : ini.Sections()) {
        const auto isField = [](const IniKey& key) { return !PolledField(key.name).empty(); };
        if (std::none_of(section.keys.begin(), section.keys.end(), isField)) continue;
        const auto text = [&](const char* key, const char* without) {
            const IniKey* found = section.Find(key);
            return found ? found->value : std::string(without);
        };
        const PollPlan usual;
        Device device;
        device.section = section.name;
        device.name = text("Name", section.name.c_str());
        device.values.polled = !SameWord(text("Polled", "TRUE"), "FALSE");
        device.values.period = text("Poll", "");
        device.values.timeout = text("Timeout", std::to_string(usual.timeout).c_str());
        device.values.retries = text("Retries", std::to_string(usual.retries).c_str());
        device.saved = device.values;
        devices.push_back(std::move(device));
    }
    if (devices.empty()) m_missing = m_path + ": no device has fields to be polled (\"Poll.NAME\").";
}

PollSettings::Fault PollSettings::Check(const Values& values) {
    if (!values.polled) return {};
    if (std::string why = CheckNumber(values.period, "Period", kPollPeriods); !why.empty())
        return {kPeriod, why};
    if (std::string why = CheckNumber(values.timeout, "Timeout", kPollTimeouts); !why.empty())
        return {kTimeout, why};
    if (std::string why = CheckNumber(values.retries, "Retries", kPollRetries); !why.empty())
        return {kRetries, why};
    return {};
}

std::string PollSettings::Save() {
    const auto differs = [](const Device& device) { return device.values != device.saved; };
    if (std::none_of(devices.begin(), devices.end(), differs)) return {};
    for (const Device& device : devices)
        if (const Fault fault = Check(device.values); fault.field != kNone)
            return device.name + ": " + fault.text;
    const std::string why = EditSiteFile(m_path, [&](std::string& bytes) {
        for (const Device& device : devices) {
            const Values& now = device.values;
            const auto set = [&](const char* key, const std::string& value, const std::string& before) {
                if (value != before) SetIniValue(bytes, device.section, key, value);
            };
            if (now.polled != device.saved.polled)
                SetIniValue(bytes, device.section, "Polled", now.polled ? "TRUE" : "FALSE");
            if (!now.polled) continue;  // its numbers stay those that were right
            set("Poll", now.period, device.saved.period);
            set("Timeout", now.timeout, device.saved.timeout);
            set("Retries", now.retries, device.saved.retries);
        }
        return std::string();
    });
    if (!why.empty()) return why;
    for (Device& device : devices) {
        device.saved.polled = device.values.polled;
        if (device.values.polled) device.saved = device.values;
    }
    return {};
}

}  // namespace brindle::host
