// The environment on POSIX systems. Terminals are told by isatty. Tests: environment_test.cpp.
#include <unistd.h>

#include <cstdlib>

#include "brindle/framework/letter_case.h"
#include "brindle/platform/environment.h"
#include "brindle/platform/system_text.h"

namespace brindle {
namespace {

class PosixEnvironment final : public Environment {
  public:
    bool Variable(std::string_view name, std::string& value) override {
        if (name.empty() || name.find('=') != name.npos || name.find('\0') != name.npos) return false;
        const char* found = std::getenv(std::string(name).c_str());
        if (!found) return false;
        value = found;
        return true;
    }
    bool VariableNoCase(std::string_view name, std::string& value) override {
        if (Variable(name, value)) return true;
        std::string wanted;
        FromSystemText(name, wanted);
        std::string_view best;
        for (char** entry = environ; entry && *entry; ++entry) {
            const std::string_view variable = *entry;
            const std::string_view candidate = variable.substr(0, variable.find('='));
            std::string bytes;
            FromSystemText(candidate, bytes);
            if (candidate.empty() || !EqualNoCase(bytes, wanted)) continue;
            if (best.empty() || candidate < best.substr(0, best.find('='))) best = variable;
        }
        if (best.empty()) return false;
        value = best.substr(best.find('=') + 1);
        return true;
    }
    bool IsTerminal(StandardStream stream) override { return ::isatty(Descriptor(stream)) == 1; }

  private:
    static int Descriptor(StandardStream stream) noexcept {
        switch (stream) {
            case StandardStream::kInput:
                return STDIN_FILENO;
            case StandardStream::kOutput:
                return STDOUT_FILENO;
            case StandardStream::kError:
                break;
        }
        return STDERR_FILENO;
    }
};

constinit PosixEnvironment g_posixEnvironment;

}  // namespace

Environment& BackendEnvironment() noexcept {
    return g_posixEnvironment;
}

}  // namespace brindle
