// The table of the library's own dynamically creatable classes. Tests: library_test.cpp.
#include "brindle/framework/runtime_classes.h"

#include "brindle/address/address_ov.h"
#include "brindle/util/timer.h"

namespace brindle {
namespace {

constexpr const CRuntimeClass* kClasses[] = {
    &CObject::classCObject,
    &CAddressOv::classCAddressOv,
    &CWnd::classCWnd,
    &CTimer::classCTimer,
};

}  // namespace

std::span<const CRuntimeClass* const> LibraryRuntimeClasses() noexcept {
    return kClasses;
}

}  // namespace brindle
