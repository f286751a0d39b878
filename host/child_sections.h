// ForEachChild: the child sections of what a reader is in, one after the other.
#pragma once

#include <brindle/xml/xml_reader.h>

namespace brindle::host {

// Calls `visit(name)` inside each child section of the reader's current one. The visit comes back to the section it
// was called in.
template <class Visit>
void ForEachChild(XMLReader& reader, const Visit& visit) {
    for (const CStringA& name : reader.GetChildSections()) {
        if (!reader.EnterSection(name, false)) continue;
        visit(name);
        reader.CloseSection();
    }
}

}  // namespace brindle::host
