// The table of the library's own dynamically creatable classes. Tests: library_test.cpp.
#include "brindle/framework/runtime_classes.h"

#include "brindle/address/address_ov.h"
#include "brindle/framework/ui/ole_property_page.h"
#include "brindle/framework/ui/property_sheet.h"
#include "brindle/util/timer.h"

namespace brindle {
namespace {

constexpr const CRuntimeClass* kClasses[] = {
    &CObject::classCObject,
    &CAddressOv::classCAddressOv,
    &CWnd::classCWnd,
    &CTimer::classCTimer,
    &CDialog::classCDialog,
    &CPropertyPage::classCPropertyPage,
    &COlePropertyPage::classCOlePropertyPage,
    &CPropertySheet::classCPropertySheet,
};

}  // namespace

std::span<const CRuntimeClass* const> LibraryRuntimeClasses() noexcept {
    return kClasses;
}

}  // namespace brindle
