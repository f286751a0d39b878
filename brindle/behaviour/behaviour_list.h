// CCommandBehaviourList: the unit a host works with. Each host object that can react to events owns one list
// of behaviours; the host feeds it events, asks it about unlocking, loads and saves it, and drives everything
// that depends on time by calling CallOnTimer.
//
// Actions and triggers may call back into the engine while it runs them: execute events, add, cancel and
// reset repeats, load the list, remove behaviours, destroy lists, and run a nested event loop in which
// CallOnTimer comes again. A pass visits the lists, behaviours and repeats present when it began that are
// still there at their turn. Objects that a list destroys meanwhile are kept until the outermost call
// returns. A repeat never runs on a trigger or action that has been destroyed.
//
// Thread: one thread for events, loading, editing and the timer. The repeats alone are guarded by the list's
// re-entrant lock, which the timer holds for its pass over the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "brindle/behaviour/behaviour.h"
#include "brindle/behaviour/item_list.h"
#include "brindle/behaviour/repeat_entry.h"
#include "brindle/behaviour/trigger.h"

class CCommandAction;
class TraveralFunct;
class VariableManager;

namespace brindle {
class RepeatQueue;
struct EventPlan;
class ListFrame;
}  // namespace brindle

class BRINDLE_API CCommandBehaviourList : public CCommandTreeItem {
  public:
    // An empty list that takes its place behind all others.
    explicit CCommandBehaviourList(CCommandTrigger::eHostType host);
    CCommandBehaviourList(const CCommandBehaviourList&) = delete;
    CCommandBehaviourList& operator=(const CCommandBehaviourList&) = delete;
    ~CCommandBehaviourList() override;  // cancels the repeats, destroys the behaviours

    // All lists of the process, in order of construction.
    static POSITION GetHeadPosition();
    // The list at the position, never null, which moves to the next list. The list stays its owner's.
    static CCommandBehaviourList* GetNext(POSITION& position);
    static void TraverseAll(const TraveralFunct& visitor);
    // Runs the due repeats of every list. The system time is read once for the whole pass. Entries due
    // together run in the order they were added, list by list.
    static void CallOnTimer();
    // The earliest due time of all repeats (milliseconds since 1601-01-01 UTC); UINT64_MAX when nothing
    // pends. For hosts that sleep until something is due.
    static std::uint64_t GetNextDue();

    POSITION GetFirstChildPosition() const override;
    const CCommandTreeItem* GetNextChild(POSITION& position) const override;
    int GetChildCount() const override;
    bool IsVisible() const override;
    CStringA GetText(int kind) override;
    CStringA GetReflect() override;
    int GetImage() const override;
    void Save(XMLWriter& writer) const override;
    // Destroys all behaviours, then reads the "BehaviourList" section; absent, the list stays empty. Pending
    // repeats stay in the queue, but those of destroyed triggers and actions never run again. After an exception of
    // the host's code the behaviours read before it are there.
    void Load(XMLReader& reader) override;

    // Whether it holds no behaviour.
    bool IsEmpty() const;
    CCommandTrigger::eHostType GetHostType() const noexcept { return m_hostType; }
    // At the end; takes ownership. After an exception (a trigger's HasConfig, memory running out) the behaviour is not
    // in the list and still the caller's.
    void Add(CCommandBehaviour* behaviour);
    // Not destroyed: the caller owns it again, also after an exception.
    void Remove(CCommandBehaviour* behaviour);
    // Cancels all repeats and takes every behaviour out without destroying it: the caller owns them.
    void ResetList();
    // Cancels all repeats and resets the state of every trigger.
    void Init();
    bool HasConfig(const std::string& kind) const;
    // Cached answers: does the list need device state events at all, and for every change of a device's data? Both are
    // true after an exception while they were found: rather an event too many than a state that is missed.
    bool HasStateTriggers() const noexcept { return m_hasStateTriggers; }
    bool HasAnyDataChangedStateTrigger() const noexcept { return m_hasAnyDataChanged; }
    void Traverse(const TraveralFunct& visitor);

    // Feeds the event to every enabled behaviour when the list is enabled. Consumes one reference of the
    // event in every case, also when an exception of the host's code passes through.
    void Execute(const CCommandEvent* event, const VariableManager* variables);
    // Whether a behaviour's actions would unlock for the event; consumes one reference of it.
    // Kept: enabled flags of list and behaviours are not consulted.
    bool CanUnLock(const CCommandEvent* event);

    // Queues a repeat of the action, first due one period from now. A period of 0 or less runs at every tick.
    void AddRepeatAction(const CCommandTrigger* trigger, const CCommandEvent* event,
                         const CCommandAction* action, const VariableManager* variables);
    // Queues the action for the trigger's next time; nothing when that is 0 or less. It runs without a scope.
    void AddRepeatTrigger(const CCommandTrigger* trigger, const CCommandEvent* event,
                          const CCommandAction* action);
    // Removes the trigger's repeats whose Retest says they are over.
    void CancelRepeats(const CCommandTrigger* trigger);
    void ResetRepeats();
    // Pending repeats, inert ones included.
    int GetRepeatCount() const;

  protected:
    // Runs the due repeats of this list at the current system time. A plain text string thrown by host code
    // is swallowed and the pass goes on; any other exception releases the lock and passes through.
    void OnTimer();

  private:
    friend class brindle::ListFrame;
    friend struct BehaviourLayout;
    struct Registry;

    void CacheStateTriggerProps() const;
    void LoadBehaviours(XMLReader& reader, const brindle::ListFrame& frame);
    std::shared_ptr<const brindle::EventPlan> CurrentPlan();
    static void ExecuteChanged(const brindle::EventPlan& plan, std::size_t tested, int verdict,
                               const CCommandEvent* event, const VariableManager* variables,
                               brindle::ListFrame& frame);
    static void ContinueChanged(const brindle::EventPlan& plan, std::size_t next, const CCommandEvent* event,
                                const VariableManager* variables, brindle::ListFrame& frame);
    static void AskChanged(const brindle::EventPlan& plan, std::size_t member, const CCommandEvent* event,
                           const VariableManager* variables, const brindle::ListFrame& frame);
    static CCommandBehaviour* Held(const brindle::EventPlan& plan, std::size_t member,
                                   const brindle::ListFrame& frame);
    static CCommandBehaviour* Owner(const brindle::EventPlan& plan, std::size_t trigger,
                                    const brindle::ListFrame& frame);
    void Queue(brindle::RepeatQueue& repeats, RepeatEntry entry, std::int64_t delay);

    static Registry m_lObjects;

    std::shared_ptr<brindle::RepeatQueue> m_repeats;  // the entries and the lock that guards them
    brindle::ItemList<CCommandBehaviour> m_behaviours{true};
    CCommandTrigger::eHostType m_hostType;
    mutable bool m_hasStateTriggers = false;
    mutable bool m_hasAnyDataChanged = false;
    std::shared_ptr<const brindle::EventPlan> m_plan;
    brindle::ListFrame* m_frames = nullptr;  // calls of this list in progress, innermost first
    std::uint64_t m_serial;
    CCommandBehaviourList* m_previous = nullptr;  // neighbours in m_lObjects
    CCommandBehaviourList* m_next = nullptr;
};
