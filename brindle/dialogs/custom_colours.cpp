// Custom colours in the user-interface INI file. Tests: select_colour_test.cpp.
#include "brindle/dialogs/custom_colours.h"

#include <string>
#include <string_view>

#include "brindle/framework/number_text.h"
#include "brindle/platform/ini_store.h"
#include "brindle/settings/ini_file_names.h"

namespace brindle {
namespace {

constexpr char kSection[] = "CustomColours";  // stored: do not change
constexpr std::size_t kBuffer = 512;

std::string Key(std::size_t index) {
    return "CustomColour" + PrintUnsigned(index);  // stored: do not change
}

// "%d,%d,%d": the components up to the first that is none; the others keep their values.
void ScanComponents(std::string_view text, std::array<std::int32_t, 3>& components) {
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (i > 0) {
            if (!text.starts_with(',')) return;
            text.remove_prefix(1);
        }
        if (!ScanInt(text, components[i])) return;
    }
}

}  // namespace

CustomColours LoadCustomColours() {
    CustomColours colours{};
    // Kept: one set of components for all entries, so that what an entry lacks is that of the entry before it.
    std::array<std::int32_t, 3> components{255, 255, 255};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        std::array<char, kBuffer> buffer{};
        const std::size_t length =
            CurrentIniStore().Read(kSection, Key(i).c_str(), "255,255,255", buffer.data(), buffer.size(),
                                   KeptIniFileNames().userInterface);
        ScanComponents({buffer.data(), length}, components);
        for (std::size_t channel = 0; channel < components.size(); ++channel)
            colours[i] |= static_cast<std::uint32_t>(components[channel]) << (8 * channel);
    }
    return colours;
}

Result SaveCustomColours(const CustomColours& colours) {
    Result first;
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const std::string value = PrintUnsigned(colours[i] & 0xFF) + "," +
                                  PrintUnsigned((colours[i] >> 8) & 0xFF) + "," +
                                  PrintUnsigned((colours[i] >> 16) & 0xFF);
        Result result = CurrentIniStore().Write(kSection, Key(i).c_str(), value.c_str(),
                                                KeptIniFileNames().userInterface);
        if (first.ok()) first = std::move(result);
    }
    return first;
}

}  // namespace brindle
