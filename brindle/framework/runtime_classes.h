// The library's own classes that can be created by name. Library-internal: defined with the module, so that
// the framework need not know the subsystems.
#pragma once

#include <span>

#include "brindle/framework/object.h"

namespace brindle {

std::span<const CRuntimeClass* const> LibraryRuntimeClasses() noexcept;

}  // namespace brindle
