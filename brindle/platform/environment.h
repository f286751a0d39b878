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
    // The same for a name whose letter case does not matter: of several variables the one spelled exactly so, else
    // the byte-smallest name. The name too is the system's text.
    virtual bool VariableNoCase(std::string_view name, std::string& value) = 0;
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

// Replaces "%NAME%" by the variable's value, for names in any letter case. What is not set stays as typed, and so
// does a "%" without a partner; the second "%" of a name that is not set opens no other name. Both texts are bytes in
// the code page; the result is cut to `limit` bytes.
std::string ExpandEnvironment(std::string_view text, std::size_t limit);

}  // namespace brindle
