// The module object. The version is that of framework/version.h.
// Tests: library_test.cpp.
#include "brindle/library/module.h"

#include "brindle/framework/version.h"

namespace brindle {

const Module& Module::Instance() noexcept {
    static constexpr Module module{"brindle",
                                   BRINDLE_VERSION_TEXT,
                                   {BRINDLE_VERSION_MAJOR, BRINDLE_VERSION_MINOR, BRINDLE_VERSION_PATCH}};
    return module;
}

}  // namespace brindle
