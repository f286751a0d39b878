// Tested in rule_editor_test.cpp.
#include "brindle/variables/hook/rule_editor.h"

namespace {
constinit RuleEditorFunct g_ruleEditor = nullptr;
}

void RegisterRuleEditorFunct(RuleEditorFunct editor) noexcept {
    g_ruleEditor = editor;
}

bool ShowRuleEditor(const CStringA& rule, const CAddressOv* address, CStringA& result) {
    return g_ruleEditor && g_ruleEditor(rule, address, result);
}
