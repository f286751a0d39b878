// Triggers, actions, events and an observer for tests of the behaviour engine: every operation the engine calls
// runs a function the test gives, or answers with a plain value, and all objects alive are counted. Without
// GoogleTest, so that fuzz targets use them too.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "brindle/address/event.h"
#include "brindle/behaviour/action.h"
#include "brindle/behaviour/behaviour_observer.h"
#include "brindle/behaviour/time_based_trigger.h"
#include "brindle/behaviour/traveral_funct.h"
#include "brindle/behaviour/trigger.h"
#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"

namespace brindle::testing {

// Probe triggers, actions and events alive at this moment.
int LiveProbes() noexcept;
// Makes ProbeTrigger, ProbeTimeTrigger and ProbeAction known under these names; once for the process.
void RegisterProbes();

class LiveCount {
  public:
    LiveCount() noexcept;
    LiveCount(const LiveCount&) noexcept;
    LiveCount& operator=(const LiveCount&) noexcept = default;
    ~LiveCount();
};

class ProbeEvent final : public CCommandEvent {
  public:
    explicit ProbeEvent(int number = 0) : CCommandEvent(number) {}
    // References held at this moment.
    int References() const;

    std::function<void()> onDestroyed;

  protected:
    ~ProbeEvent() override;

  private:
    LiveCount m_live;
};

template <class Base>
class ProbeTriggerOf final : public Base {
  public:
    static constexpr bool kTimeBased = std::is_base_of_v<CTimeBasedTrigger, Base>;

    explicit ProbeTriggerOf(int answer = 0) : verdict(answer) {}
    ~ProbeTriggerOf() override {
        if (onDestroyed) onDestroyed();
    }

    CStringA GetText(int kind) override {
        if (kind == 1 && !typeText.empty()) return typeText;
        if constexpr (kTimeBased) return Base::GetText(kind);
        return kind == 1 ? "Probe Trigger" : "";
    }
    CStringA GetReflect() override { return {}; }
    int GetNextTime() const override {
        const auto next = onNextTime;
        return next ? next() : seconds;
    }
    int Test(const CCommandEvent* event) override {
        ++tests;
        // A copy: the function may destroy this trigger, and with it the function itself.
        const auto test = onTest;
        return test ? test(event) : verdict;
    }
    bool Retest(const CCommandEvent* event) const override {
        ++retests;
        const auto retest = onRetest;
        return retest ? retest(event) : goesOn;
    }
    void Reserved23() override { ++reservedCalls; }
    void Init() override {
        ++inits;
        if (onInit) onInit();
    }
    CCommandTrigger* Replicate() override { return onReplicate ? onReplicate() : nullptr; }
    bool HasConfig(const std::string& kind) const override {
        return onHasConfig ? onHasConfig(kind) : configs.contains(kind);
    }
    void Save(XMLWriter& writer) const override {
        if (onSave) onSave();
        writer.EnterSection(kTimeBased ? "ProbeTimeTrigger" : "ProbeTrigger");
        writer.WriteAttribute("note", note.c_str());
        Base::Save(writer);
        writer.CloseSection();
    }
    void Load(XMLReader& reader) override {
        if (onLoad) onLoad();
        reader.ReadAttribute("note", note);
        Base::Load(reader);
    }

    int verdict;
    int seconds = 0;      // the next time, unless a function gives it
    bool goesOn = false;  // what Retest answers
    std::string typeText, note;
    std::set<std::string> configs;
    std::function<int(const CCommandEvent*)> onTest;
    std::function<bool(const CCommandEvent*)> onRetest;
    std::function<int()> onNextTime;
    std::function<void()> onInit, onLoad, onSave, onDestroyed;
    std::function<CCommandTrigger*()> onReplicate;
    std::function<bool(const std::string&)> onHasConfig;
    int tests = 0, inits = 0, reservedCalls = 0;
    mutable int retests = 0;

  private:
    LiveCount m_live;
};

using ProbeTrigger = ProbeTriggerOf<CCommandTrigger>;
using ProbeTimeTrigger = ProbeTriggerOf<CTimeBasedTrigger>;

class ProbeAction final : public CCommandAction {
  public:
    using CCommandAction::IsSysCreated;

    explicit ProbeAction(std::function<void(const CCommandEvent*)> fire = {}) : onFire(std::move(fire)) {}
    ~ProbeAction() override;

    CStringA GetText(int) override { return "Probe Action"; }
    CStringA GetReflect() override { return {}; }
    bool IsTemplate() override;
    void Fire(const CCommandEvent* event) override;
    bool CanUnLock(const CCommandEvent* event) const override;
    bool IsRepeat() const override;
    int GetRepeatTime() const override { return onRepeatTime ? onRepeatTime() : period; }
    CCommandAction* Replicate() override { return onReplicate ? onReplicate() : nullptr; }
    void Save(XMLWriter& writer) const override;
    void Load(XMLReader& reader) override;

    bool isTemplate = false, repeats = false, unlocks = false;
    int period = 0;  // milliseconds
    std::string note;
    std::function<void(const CCommandEvent*)> onFire;
    std::function<void()> onIsTemplate, onIsRepeat, onLoad, onSave, onDestroyed;
    std::function<int()> onRepeatTime;
    std::function<bool(const CCommandEvent*)> onCanUnLock;
    std::function<CCommandAction*()> onReplicate;
    int runs = 0;
    mutable int unlockCalls = 0;

  private:
    LiveCount m_live;
};

// A visitor made of a function.
class ProbeVisitor final : public TraveralFunct {
  public:
    explicit ProbeVisitor(std::function<void(CCommandTreeItem*)> visit) : m_visit(std::move(visit)) {}
    void operator()(CCommandTreeItem* item) const override { m_visit(item); }

  private:
    std::function<void(CCommandTreeItem*)> m_visit;
};

// Writes one line for each thing it is told; objects appear under the names the test gives them, or as "?".
class ProbeObserver final : public IBehaviourObserver {
  public:
    ProbeObserver() : m_previous(RegisterBehaviourObserver(this)) {}
    ProbeObserver(const ProbeObserver&) = delete;
    ProbeObserver& operator=(const ProbeObserver&) = delete;
    ~ProbeObserver() { RegisterBehaviourObserver(m_previous); }

    void Name(const void* object, std::string name) { m_names.emplace_back(object, std::move(name)); }
    // The lines since the last call.
    std::vector<std::string> Take() { return std::exchange(m_lines, {}); }

    void OnVerdict(const CCommandBehaviourList* list, const CCommandBehaviour* behaviour,
                   const CCommandTrigger* trigger, const CCommandEvent* event, int verdict,
                   bool forUnlock) override;
    void OnActionRun(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                     const CCommandAction* action, const CCommandEvent* event) override;
    void OnActionSkipped(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                         const CCommandAction* action, const CCommandEvent* event,
                         SkipReason reason) override;
    void OnUnlockAllowed(const CCommandBehaviourList* list, const CCommandTrigger* trigger,
                         const CCommandAction* action, const CCommandEvent* event) override;
    void OnRepeatAdded(const CCommandBehaviourList* list, const RepeatEntry& entry, bool scheduled) override;
    void OnRepeatRun(const CCommandBehaviourList* list, const RepeatEntry& entry) override;
    void OnRepeatCancelled(const CCommandBehaviourList* list, const RepeatEntry& entry) override;
    void OnRepeatKept(const CCommandBehaviourList* list, const RepeatEntry& entry) override;

  private:
    std::string NameOf(const void* object) const;
    std::string Words(const void* list, const void* trigger, const void* action, const void* event) const;
    void Entry(const char* what, const CCommandBehaviourList* list, const RepeatEntry& entry);

    IBehaviourObserver* m_previous;
    std::vector<std::pair<const void*, std::string>> m_names;
    std::vector<std::string> m_lines;
};

}  // namespace brindle::testing
