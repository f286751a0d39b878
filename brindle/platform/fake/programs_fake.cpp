#include "brindle/platform/fake/programs_fake.h"

#include "brindle/framework/letter_case.h"
#include "brindle/platform/files.h"

namespace brindle {
namespace {

std::string Folded(std::string_view name) {
    std::string folded(name);
    for (char& c : folded) c = ToLower(c);
    return folded;
}

}  // namespace

void FakePrograms::AddProgram(const std::string& name, int code) {
    m_programs[Folded(name)] = code;
}

void FakePrograms::AddDocument(const std::string& name, int code) {
    m_documents[Folded(name)] = code;
}

ProgramPlan FakePrograms::Plan(std::string_view commandLine) {
    const ProgramText text = SplitProgram(commandLine);
    ProgramPlan plan;
    plan.program = text.program;
    plan.arguments = SplitArguments(text.arguments);
    for (const std::string& name : {Folded(text.program), Folded(text.program) + ".exe"}) {
        if (!m_programs.contains(name) || plan.code == kProgramStarted) continue;
        plan.code = kProgramStarted;
        plan.systemPath = name;
    }
    return plan;
}

int FakePrograms::Start(const ProgramPlan& plan, bool hidden) {
    if (plan.code != kProgramStarted) return plan.code;
    const int code = m_programs.at(plan.systemPath);
    if (code > 32)
        started.push_back({plan.program, plan.arguments, CurrentFiles().CurrentDirectory(), hidden});
    return code;
}

int FakePrograms::Open(std::string_view document, std::string_view directory, bool hidden) {
    const bool quoted = document.size() > 1 && document.front() == '"' && document.back() == '"';
    if (quoted) document = document.substr(1, document.size() - 2);
    const auto found = m_documents.find(Folded(document));
    if (found == m_documents.end()) return kProgramNotFound;
    if (found->second > 32)
        started.push_back({std::string(document), {}, std::string(directory), hidden, true});
    return found->second;
}

}  // namespace brindle
