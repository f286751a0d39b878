// HostAction: the common part of this host's action types: name, repeat, template and unlock flags.
//
// A type T derives from HostAction<T>, gives its own attributes in OwnAttributes and what it does in Perform.
#pragma once

#include <brindle/behaviour/action.h>

#include <limits>

#include "host/configured_item.h"
#include "host/host_context.h"

namespace brindle::host {

template <class Derived>
class HostAction : public ConfiguredBase<Derived, CCommandAction> {
  public:
    const CStringA& Name() const noexcept { return m_name; }
    bool CanRename() const override { return true; }
    void Rename(const char* name) override { m_name = name; }

    void Fire(const CCommandEvent* event) final {
        if (HostContext* context = CurrentHostContext()) Perform(*context, event);
    }
    bool CanUnLock(const CCommandEvent*) const override { return m_unlock; }
    bool IsRepeat() const override { return m_repeat; }
    int GetRepeatTime() const override { return m_period; }
    bool IsSysCreated() const override { return m_sysCreated; }
    bool IsSysCreated() override { return m_sysCreated; }
    void SetTemplate(bool isTemplate) override { m_template = isTemplate; }
    bool IsTemplate() override { return m_template; }
    CCommandAction* Replicate() override { return new Derived(static_cast<const Derived&>(*this)); }

    AttributeTable Attributes() override {
        AttributeTable table;
        table.push_back(TextAttribute("Name", m_name));
        OwnAttributes(table);
        table.push_back(FlagAttribute("Repeat", m_repeat));
        table.push_back(NumberAttribute("Period", m_period, 0, std::numeric_limits<int>::max()));
        table.push_back(FlagAttribute("Unlock", m_unlock));
        table.push_back(FlagAttribute("Template", m_template));
        table.push_back(FlagAttribute("SysCreated", m_sysCreated));
        this->AppendResultAttributes(table);
        return table;
    }

  protected:
    virtual void OwnAttributes(AttributeTable& table) = 0;
    virtual void Perform(HostContext& context, const CCommandEvent* event) = 0;

  private:
    CStringA m_name;
    bool m_repeat = false;
    int m_period = 1000;  // milliseconds
    bool m_unlock = false;
    bool m_template = false;
    bool m_sysCreated = false;
};

}  // namespace brindle::host
