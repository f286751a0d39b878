// The sheet. Tests: settings_dialog_test.cpp.
#include "apps/brindle-map/settings_dialog.h"

#include <brindle/framework/ui/property_sheet.h>

#include "apps/brindle-map/settings_pages.h"

namespace brindle::map {

int ShowSettings(const host::SitePlan& plan, CWnd* owner) {
    RegisterSettingsTemplates();
    SkinPage skin(plan);
    DirectoriesPage directories(plan);
    PollingPage polling(plan);
    CPropertySheet sheet("Settings of " + (plan.name.empty() ? plan.folder : plan.name), owner);
    sheet.AddPage(&skin);
    sheet.AddPage(&directories);
    sheet.AddPage(&polling);
    return sheet.DoModal();
}

}  // namespace brindle::map
