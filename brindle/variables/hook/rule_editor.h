// The host's rule editor: a dialog the host registers so that library code can open it.
// Thread: the user interface's.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

class CAddressOv;

// Edits `rule`, for the device at `address`, which is valid during the call, or for none in particular (null). True
// when the user accepted; `result` is then the edited rule.
using RuleEditorFunct = bool (*)(const CStringA& rule, const CAddressOv* address, CStringA& result);

// Registers the editor in place of an earlier one; null unregisters.
BRINDLE_API void RegisterRuleEditorFunct(RuleEditorFunct editor) noexcept;
// Calls the registered editor and returns what it does; `address` stays the caller's. False, `result` unchanged,
// when there is none.
BRINDLE_API bool ShowRuleEditor(const CStringA& rule, const CAddressOv* address, CStringA& result);
