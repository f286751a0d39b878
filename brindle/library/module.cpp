// The module object. The version comes from the build, so that it is written in one place only.
// Tests: library_test.cpp.
#include "brindle/library/module.h"

namespace brindle {

const Module& Module::Instance() noexcept {
    static constexpr Module module{
        "brindle", BRINDLE_VERSION, {BRINDLE_VERSION_MAJOR, BRINDLE_VERSION_MINOR, BRINDLE_VERSION_PATCH}};
    return module;
}

}  // namespace brindle
