// See behaviour_probe.h.
#include "testing/behaviour_probe.h"

#include <atomic>

#include "brindle/behaviour/action_list.h"
#include "brindle/behaviour/trigger_list.h"

namespace brindle::testing {
namespace {

std::atomic<int> g_live{0};

}  // namespace

int LiveProbes() noexcept {
    return g_live.load();
}

LiveCount::LiveCount() noexcept {
    ++g_live;
}
LiveCount::LiveCount(const LiveCount&) noexcept {
    ++g_live;
}
LiveCount::~LiveCount() {
    --g_live;
}

void RegisterProbes() {
    [[maybe_unused]] static const bool once = [] {
        CCommandTriggerList::Register("ProbeTrigger",
                                      [](unsigned long) -> CCommandTrigger* { return new ProbeTrigger; });
        CCommandTriggerList::Register("ProbeTimeTrigger",
                                      [](unsigned long) -> CCommandTrigger* { return new ProbeTimeTrigger; });
        CCommandActionList::Register("ProbeAction",
                                     [](unsigned long) -> CCommandAction* { return new ProbeAction; });
        return true;
    }();
}

int ProbeEvent::References() const {
    AddRef();
    return Release();
}
ProbeEvent::~ProbeEvent() {
    if (onDestroyed) onDestroyed();
}

ProbeAction::~ProbeAction() {
    if (onDestroyed) onDestroyed();
}
bool ProbeAction::IsTemplate() {
    if (onIsTemplate) onIsTemplate();
    return isTemplate;
}
void ProbeAction::Fire(const CCommandEvent* event) {
    ++runs;
    // The function may destroy this action, and with it the function itself.
    if (const auto fire = onFire) fire(event);
}
bool ProbeAction::CanUnLock(const CCommandEvent* event) const {
    ++unlockCalls;
    return onCanUnLock ? onCanUnLock(event) : unlocks;
}
bool ProbeAction::IsRepeat() const {
    if (onIsRepeat) onIsRepeat();
    return repeats;
}
void ProbeAction::Save(XMLWriter& writer) const {
    if (onSave) onSave();
    writer.EnterSection("ProbeAction");
    writer.WriteAttribute("note", note.c_str());
    writer.WriteAttribute("period", period);
    writer.WriteAttribute("repeats", repeats);
    CCommandAction::Save(writer);
    writer.CloseSection();
}
void ProbeAction::Load(XMLReader& reader) {
    if (onLoad) onLoad();
    reader.ReadAttribute("note", note);
    reader.ReadAttribute("period", period);
    reader.ReadAttribute("repeats", repeats);
    CCommandAction::Load(reader);
}

std::string ProbeObserver::NameOf(const void* object) const {
    if (!object) return "-";
    for (auto name = m_names.rbegin(); name != m_names.rend(); ++name)
        if (name->first == object) return name->second;
    return "?";
}

std::string ProbeObserver::Words(const void* list, const void* trigger, const void* action,
                                 const void* event) const {
    return NameOf(list) + " " + NameOf(trigger) + " " + NameOf(action) + " " + NameOf(event);
}

void ProbeObserver::Entry(const char* what, const CCommandBehaviourList* list, const RepeatEntry& entry) {
    m_lines.push_back(std::string(what) + " " + Words(list, entry.trigger, entry.action, entry.event) +
                      " every " + std::to_string(entry.period) + " due " + std::to_string(entry.due));
}

void ProbeObserver::OnVerdict(const CCommandBehaviourList* list, const CCommandBehaviour* behaviour,
                              const CCommandTrigger* trigger, const CCommandEvent* event, int verdict,
                              bool forUnlock) {
    m_lines.push_back((forUnlock ? "unlock verdict " : "verdict ") + std::to_string(verdict) + " " +
                      NameOf(list) + " " + NameOf(behaviour) + " " + NameOf(trigger) + " " + NameOf(event));
}
void ProbeObserver::OnActionRun(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                                const CCommandAction* action, const CCommandEvent* event) {
    m_lines.push_back("run " + Words(list, trigger, action, event));
}
void ProbeObserver::OnActionSkipped(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                                    const CCommandAction* action, const CCommandEvent* event,
                                    SkipReason reason) {
    const char* const words[] = {"disabled", "template", "not scheduled"};
    m_lines.push_back("skip " + Words(list, trigger, action, event) + " " + words[reason]);
}
void ProbeObserver::OnUnlockAllowed(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                                    const CCommandAction* action, const CCommandEvent* event) {
    m_lines.push_back("unlock " + Words(list, trigger, action, event));
}
void ProbeObserver::OnRepeatAdded(const CCommandBehaviourList* list, const RepeatEntry& entry,
                                  bool scheduled) {
    Entry(scheduled ? "added scheduled" : "added", list, entry);
}
void ProbeObserver::OnRepeatRun(const CCommandBehaviourList* list, const RepeatEntry& entry) {
    Entry("repeat", list, entry);
}
void ProbeObserver::OnRepeatCancelled(const CCommandBehaviourList* list, const RepeatEntry& entry) {
    Entry("cancelled", list, entry);
}
void ProbeObserver::OnRepeatKept(const CCommandBehaviourList* list, const RepeatEntry& entry) {
    Entry("kept", list, entry);
}

}  // namespace brindle::testing
