// HostTrigger: the common part of this host's trigger types. DeviceTrigger adds the conditions that every
// trigger on device events has: the address and whether masked events count.
//
// A type T derives from DeviceTrigger<T>, gives its own attributes in OwnAttributes and its verdict in
// Judge, which is only asked for events of its class and address.
#pragma once

#include <brindle/address/events.h>
#include <brindle/behaviour/trigger.h>

#include "host/address_pattern.h"
#include "host/condition_tracker.h"
#include "host/configured_item.h"
#include "host/host_context.h"
#include "host/text_pattern.h"

namespace brindle::host {

// Why a trigger answered as it did.
class ExplainedTrigger {
  public:
    // A text for the last verdict; lives as long as the program.
    virtual const char* Why() const = 0;

  protected:
    ~ExplainedTrigger() = default;  // never destroyed through this interface
};

template <class Derived, class Base>
class HostTrigger : public ConfiguredBase<Derived, Base>, public ExplainedTrigger {
  public:
    const char* Why() const override { return m_why; }
    const CStringA& Name() const { return this->GetName(); }
    void Reserved23() override {}
    // A copy of the configuration, as if nothing had happened yet.
    CCommandTrigger* Replicate() override {
        auto* copy = new Derived(static_cast<const Derived&>(*this));
        copy->Init();
        return copy;
    }
    AttributeTable Attributes() override {
        AttributeTable table;
        Attribute name;
        name.name = "Name";
        name.expects = "a text";
        name.parse = [this](std::string_view text) {
            this->Rename(std::string(text).c_str());
            return std::string();
        };
        name.text = [this] { return this->GetName().str(); };
        table.push_back(std::move(name));
        OwnAttributes(table);
        this->AppendResultAttributes(table);
        return table;
    }

  protected:
    virtual void OwnAttributes(AttributeTable& table) = 0;
    int Answer(int verdict, const char* why) noexcept {
        m_why = why;
        return verdict;
    }

  private:
    const char* m_why = "";
};

template <class Derived>
class DeviceTrigger : public HostTrigger<Derived, CCommandTrigger> {
  public:
    int Test(const CCommandEvent* event) final {
        const auto* state = dynamic_cast<const CStateEvent*>(event);
        if (!state || !static_cast<Derived*>(this)->IsKind(*state))
            return this->Answer(CCommandTrigger::kNotConcerned, "another kind of event");
        if (!m_address.Matches(state->GetAddress()))
            return this->Answer(CCommandTrigger::kNotConcerned, "another address");
        if (m_own && !IsOwn(state->GetAddress()))
            return this->Answer(CCommandTrigger::kNotConcerned, "not the object's own address");
        const ConditionTracker::Answer answer = Judge(*state, MaskAgrees(*state));
        return this->Answer(answer.verdict, answer.why);
    }
    // The condition still holds for the device of that event.
    bool Retest(const CCommandEvent* event) const override {
        const auto* state = dynamic_cast<const CStateEvent*>(event);
        return state && m_tracker.Holds(state->GetAddress());
    }
    void Init() override { m_tracker.Reset(); }

  protected:
    // `counts`: the event's mask is one the trigger listens to; otherwise the condition does not hold.
    virtual ConditionTracker::Answer Judge(const CStateEvent& event, bool counts) = 0;
    virtual void DeviceAttributes(AttributeTable& table) = 0;
    ConditionTracker& Tracker() noexcept { return m_tracker; }

  private:
    enum { kMaskedNo, kMaskedYes, kMaskedAny };

    void OwnAttributes(AttributeTable& table) final {
        table.push_back(ParsedAttribute("Address", "an address, open parts as \"?\"", m_address));
        table.push_back(FlagAttribute("Own", m_own));
        table.push_back(ChoiceAttribute("Masked", m_masked, {"NO", "YES", "ANY"}));
        DeviceAttributes(table);
    }
    bool MaskAgrees(const CStateEvent& event) const noexcept {
        return m_masked == kMaskedAny || event.IsMasked() == (m_masked == kMaskedYes);
    }

    // Whether the address is that of the object whose list is asked.
    static bool IsOwn(const CAddressOv& address) {
        const HostContext* context = CurrentHostContext();
        return context && AddressPattern(context->ObjectAddress()).Matches(address);
    }

    AddressPattern m_address;
    bool m_own = false;
    int m_masked = kMaskedNo;
    ConditionTracker m_tracker;
};

// A text condition as an attribute.
inline Attribute PatternAttribute(std::string name, TextPattern& pattern) {
    return ParsedAttribute(std::move(name), "a text, \"*\" and \"?\" as wildcards", pattern);
}

}  // namespace brindle::host
