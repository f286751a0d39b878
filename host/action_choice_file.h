// SaveBehaviourList: writes what a behaviour list has become into its file, in place: comments, unknown elements,
// blanks and everything that did not change stay byte for byte.
#pragma once

#include <brindle/framework/result.h>
#include <brindle/library/host_path_access.h>

#include <string>
#include <string_view>

class CCommandBehaviourList;

namespace brindle::host {

// `known`: the marks of the file when the list was read from it; a file that somebody else has changed since is not
// touched. Nothing is written unless the new text, read again, is exactly the list; on failure the file is as it was. A
// list that is what the file says already writes nothing.
Result SaveBehaviourList(const std::string& path, const HostFileMarks& known, CCommandBehaviourList& list);

// The text of a behaviour list file with `before`, which was read from it, turned into `after`. Fails, `edited`
// unchanged, for a text that cannot be edited in place: of another encoding than UTF-8 or the code page's, with a
// document type, or with behaviours that lack a "TriggerList".
Result EditBehaviourText(std::string_view text, CCommandBehaviourList& before, CCommandBehaviourList& after,
                         std::string& edited);

}  // namespace brindle::host
