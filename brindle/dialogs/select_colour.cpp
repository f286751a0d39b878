// The colour picker's door. Tests: select_colour_test.cpp.
#include "brindle/dialogs/select_colour.h"

#include "brindle/dialogs/custom_colours.h"
#include "brindle/platform/files.h"

int SelectColour(HWND parent, unsigned long& colour) {
    brindle::CustomColours custom = brindle::LoadCustomColours();
    auto chosen = static_cast<std::uint32_t>(colour & 0xFFFFFF);
    if (!brindle::CurrentColourBox().ChooseColour(parent, chosen, custom)) return 0;
    colour = chosen;
    const brindle::Result saved = brindle::SaveCustomColours(custom);
    if (!saved.ok()) brindle::Warn(saved.text.c_str());
    return 1;
}
