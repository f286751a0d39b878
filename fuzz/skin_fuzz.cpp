// Arbitrary bytes as a skin: what was loaded is written, read again and gives the same document; every kind of value
// is asked for by what the document names.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "brindle/skin/ov_skin.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    OVSkin skin;
    if (!skin.LoadFromStr(text.c_str())) return 0;
    const CStringA xml = skin.GetXML();
    OVSkin again;
    // A name may hold a character without a byte in the code page, which then reads as "?".
    if (!again.LoadFromStr(xml)) {
        if (xml.str().find('?', 20) == std::string::npos) std::abort();
        return 0;
    }
    if (again.GetXML() != xml) std::abort();
    for (const char* attribute : {"colour", "bordersize", "x"}) {
        unsigned char byte = 0;
        int number = 0;
        long longNumber = 0;
        unsigned long colour = 0;
        CStringA value;
        const bool found = skin.GetExactProp(2, "button", attribute, number);
        if (skin.GetExactProp(2, "button", attribute, byte) != found) std::abort();
        if (skin.GetExactProp(2, "button", attribute, longNumber) != found) std::abort();
        if (skin.GetExactProp(2, "button", attribute, colour) != found || colour > 0xFFFFFF) std::abort();
        if (skin.GetExactProp(0, "button", attribute, value) && !found) std::abort();
        if (found && byte != static_cast<unsigned char>(number)) std::abort();
    }
    return 0;
}
