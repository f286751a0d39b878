// Random sequences of operations on a behaviour list, compared step by step with a slow second implementation.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "testing/behaviour_kit.h"
#include "testing/behaviour_model.h"

namespace {

using namespace brindle::testing;
using Model = BehaviourModel;

// What the real objects do, in order; and the schedule's epoch.
struct Record {
    std::vector<std::string> log;
    int epoch = 0;
    bool inTimer = false;
};
Record* g_record = nullptr;

template <class Base>
class ScriptTrigger final : public Base {
  public:
    explicit ScriptTrigger(int number) : id(number) {}
    CStringA GetText(int) override {
        return script::KindOf(id) == script::kOrdinary ? "Script" : CTimeBasedTrigger::kTypeText;
    }
    CStringA GetReflect() override { return {}; }
    void Reserved23() override {}
    int GetNextTime() const override { return script::Seconds(id, g_record->epoch); }
    int Test(const CCommandEvent* event) override {
        g_record->log.push_back("test " + std::to_string(id));
        return script::Verdict(id, event->type());
    }
    bool Retest(const CCommandEvent* event) const override {
        g_record->log.push_back("retest " + std::to_string(id) + " " + std::to_string(event->type()));
        return script::GoesOn(id, event->type());
    }
    int id;
};

CCommandTrigger* NewTrigger(int id) {
    if (script::KindOf(id) == script::kTimeBased) return new ScriptTrigger<CTimeBasedTrigger>(id);
    return new ScriptTrigger<CCommandTrigger>(id);
}

class ScriptAction final : public CCommandAction {
  public:
    explicit ScriptAction(int number) : id(number) {}
    CStringA GetText(int) override { return {}; }
    CStringA GetReflect() override { return {}; }
    bool IsTemplate() override { return script::IsTemplate(id); }
    bool IsRepeat() const override { return script::Repeats(id); }
    int GetRepeatTime() const override { return script::Period(id); }
    bool CanUnLock(const CCommandEvent*) const override { return script::Unlocks(id); }
    void Fire(const CCommandEvent* event) override {
        g_record->log.push_back("run " + std::to_string(id) + " " + std::to_string(event->type()));
        if (g_record->inTimer && script::Throws(id, event->type())) throw "text";
    }
    int id;
};

// A list and its model, and the operations on both.
class Pair {
  public:
    Pair(unsigned seed, brindle::FakeClock& clock) : m_random(seed), m_clock(clock) {
        g_record = &m_record;
        m_model.now = brindle::SystemMilliseconds();
        for (int i = 0; i < 3; ++i) AddBehaviour();
    }
    ~Pair() { m_list.reset(); }

    // One random operation; its name.
    std::string Step() {
        struct Operation {
            const char* name;
            unsigned weight;
            void (Pair::*run)();
        };
        static constexpr Operation kOperations[] = {
            {"execute", 30, &Pair::Execute},
            {"timer", 25, &Pair::Timer},
            {"unlock", 5, &Pair::Unlock},
            {"add behaviour", 8, &Pair::AddBehaviour},
            {"remove behaviour", 4, &Pair::RemoveBehaviour},
            {"change a behaviour", 12, &Pair::ChangeBehaviour},
            {"enable", 10, &Pair::Enable},
            {"cancel", 6, &Pair::Cancel},
            {"reset repeats", 1, &Pair::ResetRepeats},
            {"init", 1, &Pair::Init},
            {"reset list", 1, &Pair::ResetList},
            {"load", 2, &Pair::Load},
            {"epoch", 4, &Pair::NewEpoch},
        };
        unsigned pick = Below(109);
        for (const Operation& operation : kOperations) {
            if (pick < operation.weight) {
                (this->*operation.run)();
                return operation.name;
            }
            pick -= operation.weight;
        }
        return "nothing";
    }

    void Compare() {
        EXPECT_EQ(m_record.log, m_model.log);
        for (const std::string& line : m_record.log) runs += line.starts_with("run") ? 1 : 0;
        EXPECT_EQ(m_list->GetRepeatCount(), static_cast<int>(m_model.repeats.size()));
        EXPECT_EQ(CCommandBehaviourList::GetNextDue(), m_model.NextDue());
        EXPECT_EQ(m_list->GetChildCount(), static_cast<int>(m_model.behaviours.size()));
        m_record.log.clear();
        m_model.log.clear();
    }
    std::size_t runs = 0;  // of actions, so that a test can see that something happened

  private:
    unsigned Below(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }
    std::size_t Index(std::size_t size) { return Below(static_cast<unsigned>(size)); }

    void Execute() {
        auto* event = new ProbeEvent(static_cast<int>(Below(50)));
        m_model.Execute(event->type());
        m_list->Execute(event, nullptr);
    }
    void Timer() {
        static constexpr int kSteps[] = {0, 1, 99, 100, 1'000, 2'500, 60'000, -500, -10'000};
        const auto step = static_cast<std::uint64_t>(static_cast<std::int64_t>(kSteps[Below(9)]));
        m_clock.AdvanceMilliseconds(step);
        m_model.now = brindle::SystemMilliseconds();
        m_model.Timer();
        m_record.inTimer = true;
        CCommandBehaviourList::CallOnTimer();
        m_record.inTimer = false;
    }
    void Unlock() {
        auto* event = new ProbeEvent(static_cast<int>(Below(50)));
        const bool expected = m_model.CanUnLock(event->type());
        EXPECT_EQ(m_list->CanUnLock(event), expected);
    }
    void AddBehaviour() {
        if (m_behaviours.size() > 8) return;
        m_behaviours.push_back(new CCommandBehaviour);
        m_model.behaviours.emplace_back();
        m_list->Add(m_behaviours.back());
        for (unsigned i = Below(4); i > 0; --i) AddTriggerTo(m_behaviours.size() - 1);
        for (unsigned i = Below(4); i > 0; --i) AddActionTo(m_behaviours.size() - 1);
    }
    void AddTriggerTo(std::size_t at) {
        CCommandTrigger* trigger = NewTrigger(++m_number);
        m_behaviours[at]->AddTrigger(trigger);
        m_model.behaviours[at].triggers.push_back({m_number});
        m_triggers.push_back({m_number, trigger});
    }
    void AddActionTo(std::size_t at) {
        auto* action = new ScriptAction(++m_number);
        m_behaviours[at]->AddAction(action);
        auto& actions = m_model.behaviours[at].actions;
        actions.insert(actions.begin(), {m_number});
        m_actions.push_back({m_number, action});
    }
    void RemoveBehaviour() {
        if (m_behaviours.empty()) return;
        const std::size_t at = Index(m_behaviours.size());
        m_list->Remove(m_behaviours[at]);
        delete m_behaviours[at];
        m_model.Forget(m_model.behaviours[at]);
        m_behaviours.erase(m_behaviours.begin() + static_cast<std::ptrdiff_t>(at));
        m_model.behaviours.erase(m_model.behaviours.begin() + static_cast<std::ptrdiff_t>(at));
    }
    void ChangeBehaviour() {
        if (m_behaviours.empty()) return;
        const std::size_t at = Index(m_behaviours.size());
        Model::Behaviour& model = m_model.behaviours[at];
        switch (Below(5)) {
            case 0:
                AddTriggerTo(at);
                break;
            case 1:
                AddActionTo(at);
                break;
            case 2: {
                if (model.triggers.empty()) return;
                const auto item =
                    model.triggers.begin() + static_cast<std::ptrdiff_t>(Index(model.triggers.size()));
                m_behaviours[at]->RemoveTrigger(TriggerOf(item->id));
                m_model.ForgetTrigger(item->id);
                model.triggers.erase(item);
                break;
            }
            case 3: {
                if (model.actions.empty()) return;
                const auto item =
                    model.actions.begin() + static_cast<std::ptrdiff_t>(Index(model.actions.size()));
                m_behaviours[at]->RemoveAction(ActionOf(item->id));
                m_model.ForgetAction(item->id);
                model.actions.erase(item);
                break;
            }
            default:
                Move(at);
                break;
        }
    }
    void Move(std::size_t at) {
        auto& actions = m_model.behaviours[at].actions;
        if (actions.empty()) return;
        const std::size_t from = Index(actions.size());
        const std::size_t to = Index(actions.size() + 1);
        const Model::Item item = actions[from];
        const int before = to < actions.size() ? actions[to].id : 0;
        m_behaviours[at]->MoveAction(ActionOf(item.id), before ? ActionOf(before) : nullptr);
        actions.erase(actions.begin() + static_cast<std::ptrdiff_t>(from));
        const auto place = std::find_if(actions.begin(), actions.end(),
                                        [&](const Model::Item& other) { return other.id == before; });
        actions.insert(place, item);
    }
    void Enable() {
        const bool on = Below(4) != 0;
        if (Below(8) == 0 || m_behaviours.empty()) {
            m_list->SetEnabled(on);
            m_model.enabled = on;
            return;
        }
        const std::size_t at = Index(m_behaviours.size());
        Model::Behaviour& model = m_model.behaviours[at];
        if (Below(3) == 0) {
            m_behaviours[at]->SetEnabled(on);
            model.enabled = on;
        } else if (Below(2) == 0 && !model.triggers.empty()) {
            Model::Item& item = model.triggers[Index(model.triggers.size())];
            item.enabled = on;
            TriggerOf(item.id)->SetEnabled(on);
        } else if (!model.actions.empty()) {
            Model::Item& item = model.actions[Index(model.actions.size())];
            item.enabled = on;
            ActionOf(item.id)->SetEnabled(on);
        }
    }
    void Cancel() {
        if (m_behaviours.empty()) return;
        const Model::Behaviour& model = m_model.behaviours[Index(m_behaviours.size())];
        if (model.triggers.empty()) return;
        const int id = model.triggers[Index(model.triggers.size())].id;
        m_model.Cancel(id);
        m_list->CancelRepeats(TriggerOf(id));
    }
    void ResetRepeats() {
        m_list->ResetRepeats();
        m_model.repeats.clear();
    }
    void Init() {
        m_list->Init();
        m_model.repeats.clear();
    }
    void ResetList() {
        m_list->ResetList();
        for (CCommandBehaviour* behaviour : m_behaviours) delete behaviour;
        m_behaviours.clear();
        m_model.behaviours.clear();
        m_model.repeats.clear();
    }
    void Load() {
        XMLReader reader = ReaderOf("<BehaviourList/>");
        m_list->Load(reader);
        for (const Model::Behaviour& behaviour : m_model.behaviours) m_model.Forget(behaviour);
        m_behaviours.clear();
        m_model.behaviours.clear();
    }
    void NewEpoch() { m_model.epoch = ++m_record.epoch; }

    CCommandTrigger* TriggerOf(int id) const { return Find(m_triggers, id); }
    ScriptAction* ActionOf(int id) const { return Find(m_actions, id); }
    template <class T>
    static T* Find(const std::vector<std::pair<int, T*>>& items, int id) {
        for (const auto& [number, item] : items)
            if (number == id) return item;
        return nullptr;
    }

    std::mt19937 m_random;
    brindle::FakeClock& m_clock;
    Record m_record;
    std::unique_ptr<ProbeList> m_list = std::make_unique<ProbeList>();
    std::vector<CCommandBehaviour*> m_behaviours;
    std::vector<std::pair<int, CCommandTrigger*>> m_triggers;
    std::vector<std::pair<int, ScriptAction*>> m_actions;
    int m_number = 0;
    Model m_model;
};

class BehaviourModelTest : public BehaviourTest {};

TEST_F(BehaviourModelTest, TwoThousandSequencesRunAlike) {
    std::size_t runs = 0;
    for (unsigned seed = 0; seed < 2'000 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Pair pair(seed, clock);
        for (int step = 0; step < 60 && !HasFailure(); ++step) {
            const std::string operation = pair.Step();
            SCOPED_TRACE(std::to_string(step) + " " + operation);
            pair.Compare();
        }
        runs += pair.runs;
    }
    EXPECT_GT(runs, 10'000u) << "the sequences are meant to run actions";
}

}  // namespace
