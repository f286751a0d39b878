// The registration of the editor. Tests: rule_editor_dialog_test.cpp.
#include "apps/brindle-map/rule_editor_registration.h"

#include <brindle/variables/hook/rule_editor.h>

#include <QtCore/QThread>

#include "apps/brindle-map/dialog_owner.h"
#include "apps/brindle-map/rule_editor_dialog.h"

namespace brindle::map {
namespace {

constinit const host::DeviceTable* g_devices = nullptr;  // of the station whose editor is registered

bool EditRule(const CStringA& rule, const CAddressOv* address, CStringA& result) {
    if (!g_devices || !qApp || QThread::currentThread() != qApp->thread()) return false;
    DialogOwner owner;
    RuleEditorDialog dialog(*g_devices, address ? *address : CAddressOv(), rule, owner.Window());
    if (dialog.DoModal() != 1) return false;
    result = dialog.Rule();
    return true;
}

}  // namespace

RuleEditorRegistration::RuleEditorRegistration(const host::DeviceTable& devices) : m_devices(devices) {
    g_devices = &m_devices;
    RuleEditorDialog::RegisterTemplate();
    RegisterRuleEditorFunct(&EditRule);
}

RuleEditorRegistration::~RuleEditorRegistration() {
    if (g_devices != &m_devices) return;
    g_devices = nullptr;
    RegisterRuleEditorFunct(nullptr);
}

}  // namespace brindle::map
