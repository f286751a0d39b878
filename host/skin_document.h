// Skins as documents: what a file holds that a skin does not keep, what is doubtful in it, and a skin's values as a
// list.
#pragma once

#include <brindle/skin/ov_skin.h>

#include <string>
#include <vector>

#include "host/problem.h"

namespace brindle::host {

struct SkinValue {
    std::string mode;
    std::string element;
    std::string attribute;
    std::string text;
};

// All values, in the order of the skin's document. False when it has no readable document: a name or a value holds
// what XML or the code page cannot.
bool ListSkinValues(OVSkin& skin, std::vector<SkinValue>& values);

enum class SkinValueKind { kText, kNumber, kColour };
// What a value of the built-in skin's vocabulary is; null when that has no such element or attribute.
struct SkinVocabularyEntry {
    std::string element;
    std::string attribute;
    SkinValueKind kind = SkinValueKind::kText;
};
// Made of the built-in skin's own values. One entry for each attribute of each element, whatever the mode.
std::vector<SkinVocabularyEntry> SkinVocabulary();
// Whether a text is a colour as skins write it: "#RRGGBB" or "RRGGBB".
bool IsSkinColour(const std::string& text) noexcept;

// Reports what is wrong in a skin file: that it cannot be loaded or is no skin, elements and attributes that the
// built-in skin does not know, colours and numbers that are none.
void CheckSkin(const std::string& path, Problems& problems);
// What saving the skin of this file would lose, as words: "comments", "attributes of the root" ... Empty when nothing
// would be lost, or the file cannot be loaded.
std::vector<std::string> LostBySkin(const std::string& path);

}  // namespace brindle::host
