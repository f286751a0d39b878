// The environment on POSIX systems. Terminals are told by isatty. Tests: environment_test.cpp.
#include <unistd.h>

#include <cstdlib>

#include "brindle/platform/environment.h"

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
