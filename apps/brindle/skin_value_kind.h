// The kinds of values that "brindle skin" reads and writes: one for each of the skin's overloads.
#pragma once

#include <brindle/skin/ov_skin.h>

#include <optional>
#include <string>

namespace brindle::tool {

enum class ValueKind { kText, kInt, kLong, kByte, kColour };

// The kind an option names; text when it is absent. Throws Failure(kWrongUsage) for an unknown word.
ValueKind ToValueKind(const std::optional<std::string>& word);

// Where a value stands: MODE ELEMENT ATTRIBUTE. A mode of digits, with or without "-", is a mode number.
struct SkinPlace {
    std::string mode;
    std::string element;
    std::string attribute;
};

// The value as it is printed; nothing when the skin has none.
std::optional<std::string> GetSkinValue(const OVSkin& skin, const SkinPlace& place, ValueKind kind);
// Throws Failure(kWrongUsage) when the text is not of the kind.
void SetSkinValue(OVSkin& skin, const SkinPlace& place, ValueKind kind, const std::string& text);

}  // namespace brindle::tool
