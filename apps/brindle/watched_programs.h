// WatchedPrograms: the program service while "brindle macro run" looks on: remembers what each command came to, and
// starts nothing in a dry run.
#pragma once

#include <brindle/platform/programs.h>

#include <functional>
#include <string>

namespace brindle::tool {

class WatchedPrograms final : public Programs {
  public:
    struct Outcome {
        ProgramPlan plan;
        bool hidden = false;
        bool opened = false;  // as a document, after it could not be started
        int code = 0;
    };
    // Called with each start and each opening that follows a failed one.
    using Listener = std::function<void(const Outcome&)>;

    // In place while it lives.
    WatchedPrograms(bool dryRun, Listener listener)
        : m_dryRun(dryRun), m_listener(std::move(listener)), m_real(CurrentPrograms()) {
        SetPrograms(this);
    }
    WatchedPrograms(const WatchedPrograms&) = delete;
    WatchedPrograms& operator=(const WatchedPrograms&) = delete;
    ~WatchedPrograms() { SetPrograms(nullptr); }

    ProgramPlan Plan(std::string_view commandLine) override { return m_real.Plan(commandLine); }
    int Start(const ProgramPlan& plan, bool hidden) override {
        const int code = m_dryRun ? kProgramStarted : m_real.Start(plan, hidden);
        m_listener({plan, hidden, false, code});
        return code;
    }
    int Open(std::string_view document, std::string_view directory, bool hidden) override {
        const int code = m_real.Open(document, directory, hidden);
        m_listener({{}, hidden, true, code});
        return code;
    }
    void Reap() override { m_real.Reap(); }
    void WaitForAll() override { m_real.WaitForAll(); }

  private:
    bool m_dryRun;
    Listener m_listener;
    Programs& m_real;
};

}  // namespace brindle::tool
