// FakePrograms: programs and documents a test names; starts are recorded with the directory they happened in.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "brindle/platform/programs.h"

namespace brindle {

class FakePrograms final : public Programs {
  public:
    struct Started {
        std::string program;
        std::vector<std::string> arguments;
        std::string directory;  // the current one
        bool hidden;
        bool opened = false;  // as a document
    };

    // What is known under that name, with the code starting or opening it gives. Names compare without regard to
    // case.
    void AddProgram(const std::string& name, int code = kProgramStarted);
    void AddDocument(const std::string& name, int code = kProgramStarted);

    ProgramPlan Plan(std::string_view commandLine) override;
    int Start(const ProgramPlan& plan, bool hidden) override;
    int Open(std::string_view document, std::string_view directory, bool hidden) override;
    void Reap() override { ++reaps; }
    void WaitForAll() override { ++waits; }

    std::vector<Started> started;
    int reaps = 0;
    int waits = 0;

  private:
    std::map<std::string, int> m_programs;
    std::map<std::string, int> m_documents;
};

}  // namespace brindle
