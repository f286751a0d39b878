// VariableManagerFormatCommandLineHook: lets one scope of variables expand the "{name}" references of every
// command line before the formatter fills its own fields. VariableHookScope installs it for a block of code.
//
// Thread: plain process-wide values; install and remove on the thread that formats command lines.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

class VariableManager;

class BRINDLE_API VariableManagerFormatCommandLineHook {
  public:
    // Makes `vm` (not owned; it must outlive the installation; null: nothing is expanded) the scope in force
    // and attaches this hook in place of the present one, which is kept for Remove and not called meanwhile.
    //
    // Install and Remove come in pairs. A second Install without Remove keeps this hook itself as the
    // previous one, and the hook that was there first is lost.
    static void Install(const VariableManager* vm) noexcept;
    // Puts the previous hook back; no scope is in force any more.
    static void Remove() noexcept;

    VariableManagerFormatCommandLineHook() = delete;

  private:
    friend class VariableHookScope;
    static void Format(CStringA& text);

    static const VariableManager* m_vm;
    static void (*m_oldHook)(CStringA&);
};

// Installs `vm` for the life of this object and then puts everything back as it was found, whatever was
// attached in between: scopes nest, and leaving by an exception leaves the outer scope in force. Costs a few
// stores.
class BRINDLE_API VariableHookScope {
  public:
    // Borrowed until the end; null: nothing is expanded.
    explicit VariableHookScope(const VariableManager* vm) noexcept;
    VariableHookScope(const VariableHookScope&) = delete;
    VariableHookScope& operator=(const VariableHookScope&) = delete;
    ~VariableHookScope();

  private:
    const VariableManager* m_vm;
    void (*m_oldHook)(CStringA&);
    void (*m_attached)(CStringA&);
};
