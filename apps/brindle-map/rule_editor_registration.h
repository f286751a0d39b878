// RuleEditorRegistration: makes the host's dialog the library's editor of rules, so that ShowRuleEditor opens it from
// anywhere: a field, what is wrong with the rule and where at every key, its names with the values they have at this
// moment, its reverse Polish form and its result. Only a rule that can be evaluated is accepted.
//
// Values are those of the station's devices; names without an address are fields of the device at the address that the
// caller gives. Thread: the user interface's; on another one ShowRuleEditor answers false.
#pragma once

namespace brindle::host {
class DeviceTable;
}

namespace brindle::map {

class RuleEditorRegistration {
  public:
    // The devices are borrowed. Takes the place of an earlier one.
    explicit RuleEditorRegistration(const host::DeviceTable& devices);
    RuleEditorRegistration(const RuleEditorRegistration&) = delete;
    RuleEditorRegistration& operator=(const RuleEditorRegistration&) = delete;
    ~RuleEditorRegistration();  // there is none any more, unless a later one took its place

  private:
    const host::DeviceTable& m_devices;
};

}  // namespace brindle::map
