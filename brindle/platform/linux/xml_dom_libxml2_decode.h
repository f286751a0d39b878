// Turns the bytes of an XML file into UTF-8: the first stage of a parse, so that everything behind it, the
// limits too, sees one encoding.
#pragma once

#include <string>
#include <string_view>

#include "brindle/framework/result.h"

namespace brindle {

// `utf8` is the text without a byte order mark, in `bytes` where it is UTF-8 already and else in `buffer`. A
// byte order mark decides; else the encoding that the declaration names (UTF-8, US-ASCII, UTF-16, the
// ISO-8859 and Windows single-byte sets, KOI8 and the common East Asian ones); else UTF-8. Fails for an
// encoding that is not known or does not fit the bytes. UTF-8 itself is not checked here.
Result DecodeXmlFile(std::string_view bytes, std::string& buffer, std::string_view& utf8);

}  // namespace brindle
