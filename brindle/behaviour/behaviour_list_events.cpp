// How one event goes through a behaviour list. Tests: behaviour_list_event_test.cpp.
//
// The usual event concerns few triggers of many, so the list walks a flat plan of its triggers and looks at
// nothing else while the verdict is 0. As soon as any code it calls changes the tree, the rest of the pass
// goes the careful way: each behaviour and trigger is looked up by its membership before it is touched.
#include "brindle/address/event.h"
#include "brindle/behaviour/behaviour_list.h"
#include "brindle/behaviour/event_plan.h"
#include "brindle/behaviour/list_frame.h"
#include "brindle/behaviour/observer_slot.h"

using brindle::EngineCall;
using brindle::EventPlan;
using brindle::ItemWalk;
using brindle::ListFrame;

namespace {

// Consumes one reference of an event when the block is left.
class EventReference {
  public:
    explicit EventReference(const CCommandEvent* event) noexcept : m_event(event) {}
    EventReference(const EventReference&) = delete;
    EventReference& operator=(const EventReference&) = delete;
    ~EventReference() {
        if (m_event) m_event->Release();
    }

  private:
    const CCommandEvent* m_event;
};

}  // namespace

std::shared_ptr<const EventPlan> CCommandBehaviourList::CurrentPlan() {
    const std::uint64_t generation = brindle::PlanGeneration();
    if (m_plan && m_plan->generation == generation) return m_plan;
    auto plan = std::make_shared<EventPlan>();
    plan->generation = generation;
    for (POSITION at = m_behaviours.GetHeadPosition(); at;) {
        const auto& [behaviour, serial] = m_behaviours.GetNextItem(at);
        if (!behaviour) continue;
        plan->members.push_back({behaviour, serial});
        if (!behaviour->IsEnabled()) continue;
        const brindle::ItemList<CCommandTrigger>& triggers = behaviour->m_triggers.m_triggers;
        for (POSITION position = triggers.GetHeadPosition(); position;) {
            const auto& trigger = triggers.GetNextItem(position);
            if (!trigger.object) continue;
            plan->triggers.push_back(trigger.object);
            plan->origins.push_back({plan->members.size() - 1, trigger.serial});
        }
    }
    plan->triggers.resize(plan->triggers.size() + EventPlan::kLookAhead);
    m_plan = plan;
    return plan;
}

void CCommandBehaviourList::Execute(const CCommandEvent* event, const VariableManager* variables) {
    const EventReference reference(event);
    if (!IsEnabled()) return;
    const EngineCall call;
    ListFrame frame(this);
    const std::shared_ptr<const EventPlan> plan = CurrentPlan();
    const bool observed = brindle::CurrentObserver() != nullptr;
    const std::uint64_t generation = plan->generation;
    const std::size_t count = plan->origins.size();
    CCommandTrigger* const* triggers = plan->triggers.data();
    for (std::size_t i = 0; i < count; ++i) {
        // Triggers of a list that has lived long lie scattered in memory.
        brindle::Prefetch(triggers[i + EventPlan::kLookAhead]);
        const int verdict = triggers[i]->Test(event);
        if (brindle::PlanGeneration() != generation) [[unlikely]] {
            ExecuteChanged(*plan, i, verdict, event, variables, frame);
            return;
        }
        if (verdict == CCommandTrigger::kNotConcerned && !observed) [[likely]]
            continue;
        plan->members[plan->origins[i].member].behaviour->Deliver(triggers[i], verdict, event, this,
                                                                  variables);
        if (brindle::PlanGeneration() != generation) [[unlikely]] {
            ContinueChanged(*plan, i + 1, event, variables, frame);
            return;
        }
    }
}

// The tree changed while a trigger was tested: the verdict still counts if the trigger is there.
void CCommandBehaviourList::ExecuteChanged(const EventPlan& plan, std::size_t tested, int verdict,
                                           const CCommandEvent* event, const VariableManager* variables,
                                           ListFrame& frame) {
    if (CCommandBehaviour* behaviour = Owner(plan, tested, frame))
        behaviour->Deliver(plan.triggers[tested], verdict, event, frame.List(), variables);
    ContinueChanged(plan, tested + 1, event, variables, frame);
}

// A behaviour of the plan if list and behaviour are still there, else null.
CCommandBehaviour* CCommandBehaviourList::Held(const EventPlan& plan, std::size_t member,
                                               const ListFrame& frame) {
    const auto& [behaviour, serial] = plan.members[member];
    return frame.List() && frame.List()->m_behaviours.Holds(serial) ? behaviour : nullptr;
}

// The behaviour of a trigger of the plan if list, behaviour and trigger are all still there, else null.
CCommandBehaviour* CCommandBehaviourList::Owner(const EventPlan& plan, std::size_t trigger,
                                                const ListFrame& frame) {
    const EventPlan::Origin& origin = plan.origins[trigger];
    CCommandBehaviour* behaviour = Held(plan, origin.member, frame);
    return behaviour && behaviour->m_triggers.m_triggers.Holds(origin.serial) ? behaviour : nullptr;
}

// The rest of a pass over a tree that has changed: the behaviour that was being asked is asked to its end if it
// is still in the list, then the later ones that are in the list, and enabled, at their turn.
void CCommandBehaviourList::ContinueChanged(const EventPlan& plan, std::size_t next,
                                            const CCommandEvent* event, const VariableManager* variables,
                                            ListFrame& frame) {
    const std::size_t current = plan.origins[next - 1].member;
    for (; next < plan.origins.size() && plan.origins[next].member == current; ++next) {
        if (!Owner(plan, next, frame)) continue;
        const int verdict = plan.triggers[next]->Test(event);
        if (CCommandBehaviour* behaviour = Owner(plan, next, frame))
            behaviour->Deliver(plan.triggers[next], verdict, event, frame.List(), variables);
    }
    for (std::size_t i = current + 1; i < plan.members.size(); ++i) {
        const CCommandBehaviour* behaviour = Held(plan, i, frame);
        if (behaviour && behaviour->IsEnabled()) AskChanged(plan, i, event, variables, frame);
    }
}

// One behaviour's turn: asks its triggers for as long as the list holds the behaviour.
void CCommandBehaviourList::AskChanged(const EventPlan& plan, std::size_t member, const CCommandEvent* event,
                                       const VariableManager* variables, const ListFrame& frame) {
    ItemWalk<CCommandTrigger> walk(plan.members[member].behaviour->m_triggers.m_triggers);
    while (Held(plan, member, frame)) {
        CCommandTrigger* trigger = walk.Next();
        if (!trigger) return;
        const int verdict = trigger->Test(event);
        CCommandBehaviour* behaviour = Held(plan, member, frame);
        if (behaviour && walk.HoldsCurrent())
            behaviour->Deliver(trigger, verdict, event, frame.List(), variables);
    }
}

bool CCommandBehaviourList::CanUnLock(const CCommandEvent* event) {
    const EventReference reference(event);
    const EngineCall call;
    const ListFrame frame(this);
    ItemWalk<CCommandBehaviour> walk(m_behaviours);
    while (CCommandBehaviour* behaviour = walk.Next())
        if (behaviour->CanUnLock(event, frame.List())) return true;
    return false;
}
