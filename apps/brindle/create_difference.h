// What a new expansion changes against an earlier one, item by item.
#pragma once

#include <string>

namespace brindle::tool {

// Prints "-" before triggers and actions of the old file that the new text (in the code page) does not have, "+" before
// those that it has instead. Returns whether there are any. Throws Failure when the file cannot be read.
bool PrintDifference(const std::string& oldFile, const std::string& newText);

}  // namespace brindle::tool
