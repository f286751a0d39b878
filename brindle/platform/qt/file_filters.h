// Filters of file boxes as Qt has them.
#pragma once

#include <QtCore/QStringList>
#include <string_view>

namespace brindle {

// From pairs of a text and the patterns it stands for, each with a zero behind it, up to an empty text: "Text (*.a
// *.b)". A text that names its patterns already is not given them twice; "*.*" stands for every file, here too. A last
// text without patterns is left out.
QStringList NameFilters(std::string_view pairs);

}  // namespace brindle
