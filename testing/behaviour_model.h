// BehaviourModel: a behaviour list with its repeats as plain vectors, written down as the rules say and without
// any care for speed or for code that calls back. The oracle of behaviour_model_test.cpp.
//
// What host code decides (verdicts, periods, ...) is a function of an object's number and of the event's, so that
// the model and the real objects decide alike.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace brindle::testing {

// What trigger and action number `id` decides.
namespace script {

inline std::uint32_t Mix(std::uint32_t a, std::uint32_t b) {
    std::uint32_t x = a * 2654435761u ^ (b + 0x9E3779B9u) * 2246822519u;
    x ^= x >> 15;
    x *= 3266489917u;
    return x ^ x >> 13;
}

enum Kind { kOrdinary, kTimeBased, kTimeBasedByText };

inline Kind KindOf(int trigger) {
    const std::uint32_t x = Mix(static_cast<std::uint32_t>(trigger), 1) % 8;
    return x < 5 ? kOrdinary : x < 7 ? kTimeBased : kTimeBasedByText;
}
inline int Verdict(int trigger, int event) {
    const int verdicts[] = {0, 0, 1, 2, 2, 2, 3, -1};
    return verdicts[Mix(static_cast<std::uint32_t>(trigger), static_cast<std::uint32_t>(event)) % 8];
}
inline bool GoesOn(int trigger, int event) {
    return Mix(static_cast<std::uint32_t>(trigger) + 99, static_cast<std::uint32_t>(event)) % 3 == 0;
}
// Changes with the epoch, as a real schedule does.
inline int Seconds(int trigger, int epoch) {
    const int seconds[] = {0, 1, 2, 5, -3, 30 * 24 * 3600};
    return seconds[Mix(static_cast<std::uint32_t>(trigger) + 7, static_cast<std::uint32_t>(epoch)) % 6];
}
inline bool IsTemplate(int action) {
    return Mix(static_cast<std::uint32_t>(action), 2) % 6 == 0;
}
inline bool Repeats(int action) {
    return Mix(static_cast<std::uint32_t>(action), 3) % 2 == 0;
}
inline bool Unlocks(int action) {
    return Mix(static_cast<std::uint32_t>(action), 4) % 4 == 0;
}
inline int Period(int action) {
    const int periods[] = {0, -5, 1, 100, 1'000, 2'500};
    return periods[Mix(static_cast<std::uint32_t>(action), 5) % 6];
}
// Whether the action throws a plain text when the timer runs it for that event.
inline bool Throws(int action, int event) {
    return Mix(static_cast<std::uint32_t>(action) + 5, static_cast<std::uint32_t>(event)) % 9 == 0;
}

}  // namespace script

struct BehaviourModel {
    struct Item {
        int id;
        bool enabled = true;
    };
    struct Behaviour {
        std::vector<Item> triggers;
        std::vector<Item> actions;
        bool enabled = true;
    };
    struct Entry {
        int trigger, event, action;
        std::int64_t period;
        std::uint64_t due;
        bool inert = false;
    };

    bool enabled = true;
    std::vector<Behaviour> behaviours;
    std::vector<Entry> repeats;
    std::uint64_t now = 0;
    int epoch = 0;
    std::vector<std::string> log;

    void Execute(int event) {
        if (!enabled) return;
        for (const Behaviour& behaviour : behaviours) {
            if (!behaviour.enabled) continue;
            for (const Item& trigger : behaviour.triggers) {
                log.push_back("test " + std::to_string(trigger.id));
                const int verdict = script::Verdict(trigger.id, event);
                if (!trigger.enabled) continue;
                if (verdict == 2) Go(behaviour, trigger.id, event);
                if (verdict == 1) Cancel(trigger.id);
            }
        }
    }

    void Go(const Behaviour& behaviour, int trigger, int event) {
        for (const Item& action : behaviour.actions) {
            if (script::IsTemplate(action.id) || !action.enabled) continue;
            if (script::KindOf(trigger) != script::kOrdinary) {
                const std::int64_t delay = std::int64_t{script::Seconds(trigger, epoch)} * 1000;
                if (delay > 0) repeats.push_back({trigger, event, action.id, delay, Due(delay)});
                continue;
            }
            const int period = script::Period(action.id);
            if (script::Repeats(action.id))
                repeats.push_back({trigger, event, action.id, period, Due(period)});
            Ran(action.id, event);
        }
    }

    void Cancel(int trigger) {
        std::vector<Entry> kept;
        for (const Entry& entry : repeats) {
            const bool asked = !entry.inert && entry.trigger == trigger;
            if (asked) log.push_back("retest " + std::to_string(trigger) + " " + std::to_string(entry.event));
            if (!asked || script::GoesOn(trigger, entry.event)) kept.push_back(entry);
        }
        repeats = kept;
    }

    void Timer() {
        for (Entry& entry : repeats) {
            if (entry.inert || entry.due > now) continue;
            if (script::KindOf(entry.trigger) == script::kTimeBased)
                entry.period = std::int64_t{script::Seconds(entry.trigger, epoch)} * 1000;
            entry.due = Due(entry.period);
            Ran(entry.action, entry.event);
        }
    }

    bool CanUnLock(int event) {
        for (const Behaviour& behaviour : behaviours)
            for (const Item& trigger : behaviour.triggers) {
                log.push_back("test " + std::to_string(trigger.id));
                if (script::Verdict(trigger.id, event) != 2 ||
                    script::KindOf(trigger.id) != script::kOrdinary)
                    continue;
                for (const Item& action : behaviour.actions)
                    if (!script::IsTemplate(action.id) && script::Unlocks(action.id)) return true;
            }
        return false;
    }

    // Triggers and actions that are gone take their repeats' lives along.
    void ForgetTrigger(int id) {
        for (Entry& entry : repeats) entry.inert |= entry.trigger == id;
    }
    void ForgetAction(int id) {
        for (Entry& entry : repeats) entry.inert |= entry.action == id;
    }
    void Forget(const Behaviour& behaviour) {
        for (const Item& trigger : behaviour.triggers) ForgetTrigger(trigger.id);
        for (const Item& action : behaviour.actions) ForgetAction(action.id);
    }

    std::uint64_t NextDue() const {
        std::uint64_t next = UINT64_MAX;
        for (const Entry& entry : repeats)
            if (!entry.inert) next = std::min(next, entry.due);
        return next;
    }

  private:
    std::uint64_t Due(std::int64_t delay) const { return now + static_cast<std::uint64_t>(delay); }
    void Ran(int action, int event) {
        log.push_back("run " + std::to_string(action) + " " + std::to_string(event));
    }
};

}  // namespace brindle::testing
