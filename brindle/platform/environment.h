// Environment: what the process was started with: its environment variables, and whether its standard streams
// are terminals. A private service. Thread: any, as long as nobody changes the process environment meanwhile.
#pragma once

#include <string>
#include <string_view>

namespace brindle {

enum class StandardStream { kInput, kOutput, kError };

class Environment {
  public:
    // The variable's value as the system's text. False, `value` unchanged, when it is not set; set to nothing is
    // true with an empty value. A name that is empty or holds "=" or a zero byte is never set.
    virtual bool Variable(std::string_view name, std::string& value) = 0;
    // False for a stream that is closed.
    virtual bool IsTerminal(StandardStream stream) = 0;

  protected:
    ~Environment() = default;  // never destroyed through this interface
};

// What the linked backend provides.
Environment& BackendEnvironment() noexcept;

Environment& CurrentEnvironment() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
Environment* SetEnvironment(Environment* service) noexcept;

}  // namespace brindle
