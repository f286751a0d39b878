// The skin that stands in when a file cannot be loaded.
#pragma once

namespace brindle {

// The text of the built-in skin, read when it is needed: tests put another in its place.
extern const char* g_defaultSkin;

}  // namespace brindle
