// The box in which people choose the site that the window is to show. Thread: the user interface's.
#pragma once

#include <brindle/framework/window_handle.h>

#include <optional>
#include <string>

namespace brindle::map {

// The folder of the site chosen; nothing when none was. The box begins in the directory used last, which is kept in the
// macros file of the present site, and is the one chosen from then on; without one beside the present site's folder.
std::optional<std::string> ChooseSite(HWND owner, const std::string& presentFolder);

}  // namespace brindle::map
