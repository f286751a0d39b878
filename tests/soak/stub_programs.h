// StubPrograms: every command names a program, and starting it does nothing but count.
#pragma once

#include <brindle/platform/programs.h>

#include <cstdint>

namespace brindle::soak {

class StubPrograms final : public Programs {
  public:
    StubPrograms() : m_previous(SetPrograms(this)) {}
    StubPrograms(const StubPrograms&) = delete;
    StubPrograms& operator=(const StubPrograms&) = delete;
    ~StubPrograms() { SetPrograms(m_previous); }

    ProgramPlan Plan(std::string_view commandLine) override {
        const ProgramText text = SplitProgram(commandLine);
        const std::string program(text.program);
        return {kProgramStarted, program, "/" + program, SplitArguments(text.arguments)};
    }
    int Start(const ProgramPlan&, bool) override {
        ++starts;
        return kProgramStarted;
    }
    int Open(std::string_view, std::string_view, bool) override { return kProgramNoOpener; }
    void Reap() override {}
    void WaitForAll() override {}

    std::uint64_t starts = 0;

  private:
    Programs* m_previous;
};

}  // namespace brindle::soak
