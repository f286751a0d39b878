// See skin_value_kind.h. Tests: command_skin_test.cpp.
#include "apps/brindle/skin_value_kind.h"

#include <brindle/framework/number_text.h>

#include "apps/brindle/cli_output.h"
#include "apps/brindle/cli_values.h"
#include "host/skin_document.h"

namespace brindle::tool {
namespace {

constexpr struct {
    const char* word;
    ValueKind kind;
} kKinds[] = {{"text", ValueKind::kText},
              {"int", ValueKind::kInt},
              {"long", ValueKind::kLong},
              {"byte", ValueKind::kByte},
              {"colour", ValueKind::kColour}};

bool IsModeNumber(const std::string& mode) {
    const std::size_t digits = mode.starts_with('-') ? 1 : 0;
    return mode.size() > digits && mode.find_first_not_of("0123456789", digits) == std::string::npos;
}

// Calls `use` with the mode as its name or as its number.
template <class Use>
auto WithMode(const std::string& mode, Use use) {
    return IsModeNumber(mode) ? use(ToNumber(mode, "MODE")) : use(CStringA(mode));
}

template <class Value>
std::optional<Value> Get(const OVSkin& skin, const SkinPlace& place) {
    Value value{};
    const bool found = WithMode(place.mode, [&](const auto& mode) {
        return skin.GetExactProp(mode, place.element, place.attribute, value);
    });
    if (!found) return {};
    return value;
}

template <class Value>
std::optional<std::string> GetNumber(const OVSkin& skin, const SkinPlace& place) {
    const std::optional<Value> value = Get<Value>(skin, place);
    return value ? std::optional(std::to_string(*value)) : std::nullopt;
}

// The skin's own form of a colour.
std::string ColourText(unsigned long colour) {
    OVSkin skin;
    CStringA text;
    skin.SetExactProp(0, "e", "a", colour);
    skin.GetExactProp(0, "e", "a", text);
    return text.str();
}

unsigned long ToColour(const std::string& text) {
    if (!host::IsSkinColour(text))
        throw Failure(kWrongUsage, "VALUE", "\"" + text + "\" is not a colour such as #FF8000");
    OVSkin skin;
    unsigned long colour = 0;
    skin.SetExactProp(0, "e", "a", CStringA(text));
    skin.GetExactProp(0, "e", "a", colour);
    return colour;
}

int ToByte(const std::string& text) {
    const int number = ToNumber(text, "VALUE");
    if (number < 0 || number > 255)
        throw Failure(kWrongUsage, "VALUE", "\"" + text + "\" is not from 0 to 255");
    return number;
}

}  // namespace

ValueKind ToValueKind(const std::optional<std::string>& word) {
    for (const auto& kind : kKinds)
        if (word.value_or("text") == kind.word) return kind.kind;
    throw Failure(kWrongUsage, "--as", "\"" + *word + "\" is not text, int, long, byte or colour");
}

std::optional<std::string> GetSkinValue(const OVSkin& skin, const SkinPlace& place, ValueKind kind) {
    switch (kind) {
        case ValueKind::kInt:
            return GetNumber<int>(skin, place);
        case ValueKind::kLong:
            return GetNumber<long>(skin, place);
        case ValueKind::kByte:
            return GetNumber<unsigned char>(skin, place);
        case ValueKind::kColour:
            if (const auto colour = Get<unsigned long>(skin, place)) return ColourText(*colour);
            return {};
        default:
            if (const auto text = Get<CStringA>(skin, place)) return text->str();
            return {};
    }
}

void SetSkinValue(OVSkin& skin, const SkinPlace& place, ValueKind kind, const std::string& text) {
    const auto set = [&](const auto& value) {
        WithMode(place.mode, [&](const auto& mode) {
            return skin.SetExactProp(mode, place.element, place.attribute, value);
        });
    };
    switch (kind) {
        case ValueKind::kInt:
        case ValueKind::kLong:  // both have 32 bits
            return set(ToNumber(text, "VALUE"));
        case ValueKind::kByte:
            return set(ToByte(text));
        case ValueKind::kColour:
            return set(ToColour(text));
        default:
            return set(CStringA(text));
    }
}

}  // namespace brindle::tool
