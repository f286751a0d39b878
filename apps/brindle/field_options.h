// FieldOptions: the options that fill in the fields of a line, shared by the commands that expand one; and the
// surroundings they make: a clock that stands still, the host's answers, the variables.
#pragma once

#include <brindle/platform/clock.h>
#include <brindle/variables/hook/variable_manager_format_command_line_hook.h>
#include <brindle/variables/variable_manager.h>

#include <optional>
#include <string>
#include <vector>

#include "apps/brindle/field_answers.h"
#include "apps/brindle/format_trace.h"

namespace brindle::tool {

class Command;

struct FieldOptions {
    FormatCall call;
    std::optional<std::string> address;
    std::optional<int> status, n, q;
    std::vector<std::string> variables, fields, states;

    void Declare(Command& command);
    // Adds the notes on these options to the help.
    static void Explain(Command& command);

    // The texts as the library takes them: null when not given.
    const FullAddress_t* Address() const { return call.address ? &*call.address : nullptr; }
    static const char* Pointer(const std::optional<std::string>& text) {
        return text ? text->c_str() : nullptr;
    }
};

// In place while it lives. Throws Failure for an option it cannot read.
class FieldSurroundings {
  public:
    // Completes the call of the options.
    explicit FieldSurroundings(FieldOptions& options);
    FieldSurroundings(const FieldSurroundings&) = delete;
    FieldSurroundings& operator=(const FieldSurroundings&) = delete;
    ~FieldSurroundings();

    // Null when no option asks for them.
    const VariableManager* Scope() const noexcept { return m_usedScope; }
    FieldAnswers* Data() noexcept { return m_data; }

  private:
    // The moment the command began: the stages of a trace and the result must not see the seconds change.
    class StandingClock final : public Clock {
      public:
        StandingClock() : m_real(CurrentClock()), m_ticks(m_real.SystemTicks()) { SetClock(this); }
        StandingClock(const StandingClock&) = delete;
        StandingClock& operator=(const StandingClock&) = delete;
        ~StandingClock() { SetClock(nullptr); }

        std::uint64_t SystemTicks() override { return m_ticks; }
        std::uint64_t MonotonicMilliseconds() override { return m_real.MonotonicMilliseconds(); }
        bool ToLocalTime(std::int64_t unixSeconds, LocalTime& out) override {
            return m_real.ToLocalTime(unixSeconds, out);
        }
        TimeZone StandardZone() override { return m_real.StandardZone(); }

      private:
        Clock& m_real;
        std::uint64_t m_ticks;
    };

    VariableManager m_scope;
    FieldAnswers m_answers;
    const VariableManager* m_usedScope = nullptr;
    FieldAnswers* m_data = nullptr;
    StandingClock m_clock;
    std::optional<VariableHookScope> m_hook;
};

}  // namespace brindle::tool
