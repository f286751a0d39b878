// The stages of command-line formatting, one by one: what "brindle format --trace" shows. The library expands a
// line in one call; the stages are found by calling it with the later ones kept from happening.
#pragma once

#include <brindle/address/full_address.h>

#include <optional>
#include <string>

class VariableManager;

namespace brindle::tool {

class FieldAnswers;

// What one line is formatted with; texts that are absent leave their fields as typed.
struct FormatCall {
    std::string line;
    std::optional<FullAddress_t> address;
    std::optional<std::string> path, caption, text, help, r;
    int status = 0;
    int n = -1;
    int q = -1;

    // The line expanded by the library, with whatever hook and data interface are in place.
    std::string Expand() const;
};

// Writes one line for each stage to the standard error. `scope` is the one the hook resolves with, `data` the
// registered interface; both may be null.
void TraceFormat(const FormatCall& call, const VariableManager* scope, FieldAnswers* data);

}  // namespace brindle::tool
