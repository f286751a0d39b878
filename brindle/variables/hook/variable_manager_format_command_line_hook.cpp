// Tested in variable_manager_format_command_line_hook_test.cpp.
#include "brindle/variables/hook/variable_manager_format_command_line_hook.h"

#include "brindle/macro/macro_slots.h"
#include "brindle/variables/variable_manager.h"

constinit const VariableManager* VariableManagerFormatCommandLineHook::m_vm = nullptr;
constinit PreFormatHook VariableManagerFormatCommandLineHook::m_oldHook = nullptr;

void VariableManagerFormatCommandLineHook::Install(const VariableManager* vm) noexcept {
    m_vm = vm;
    // Kept: a second Install finds this hook itself attached and forgets the one before it.
    m_oldHook = AttachPreFormatHook(&Format);
}

void VariableManagerFormatCommandLineHook::Remove() noexcept {
    AttachPreFormatHook(m_oldHook);
    m_vm = nullptr;
}

void VariableManagerFormatCommandLineHook::Format(CStringA& text) {
    // Kept: the hook this one replaced is not called.
    if (m_vm) m_vm->resolve(text);
}

VariableHookScope::VariableHookScope(const VariableManager* vm) noexcept
    : m_vm(VariableManagerFormatCommandLineHook::m_vm),
      m_oldHook(VariableManagerFormatCommandLineHook::m_oldHook),
      m_attached(brindle::g_macroSlots.preFormatHook) {
    VariableManagerFormatCommandLineHook::Install(vm);
}

VariableHookScope::~VariableHookScope() {
    // What Remove would do, and then what was remembered: only the latter can be seen.
    VariableManagerFormatCommandLineHook::m_vm = m_vm;
    VariableManagerFormatCommandLineHook::m_oldHook = m_oldHook;
    brindle::g_macroSlots.preFormatHook = m_attached;
}
