// Edits of a site's files that change one value and leave every other byte as it is: comments, order, blanks, ends of
// lines. The bytes are a file's that its check has nothing against; of others the value may not be found.
#pragma once

#include <string>
#include <string_view>

namespace brindle::host {

// Gives a key of an INI file a value, on one line and without blanks around it. A key that is missing comes behind the
// last one of its section, a section that is missing at the end. The names are found as IniText finds them.
void SetIniValue(std::string& bytes, std::string_view section, std::string_view key, std::string_view value);

// Gives an attribute that a skin's document has another value, without quotes and marks. Returns why it cannot, `bytes`
// unchanged; empty: it did. Of several the last one, which is the one that counts.
std::string SetSkinText(std::string& bytes, std::string_view mode, std::string_view element,
                        std::string_view attribute, std::string_view value);

}  // namespace brindle::host
