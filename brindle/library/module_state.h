// ModuleStateGuard: marks the functions that run in the library's own module state, so that resources and
// globals are the library's whichever module calls.
//
// On systems where a shared library has one set of globals for all its callers there is nothing to switch and
// the guard does nothing; it stays in the code for the systems that have module states. Thread: any; one guard
// belongs to the thread that made it.
#pragma once

namespace brindle {

class [[nodiscard]] ModuleStateGuard {
  public:
    ModuleStateGuard() noexcept {}
    ModuleStateGuard(const ModuleStateGuard&) = delete;
    ModuleStateGuard& operator=(const ModuleStateGuard&) = delete;
    ~ModuleStateGuard() {}
};

}  // namespace brindle
