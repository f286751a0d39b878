// ArgumentFilter: refuses to start a program when the texts filled into its command line changed how many arguments
// it has: a caption that holds a quote or, outside of quotes, a blank.
#pragma once

#include <brindle/macro/start_filter.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace brindle::host {

class ArgumentFilter final : public IStartFilter {
  public:
    bool Allow(const ProgramStart& start, CStringA& reason) override;
};

// The program and the arguments of a line as it is written: "{name}", "#name#", "$NAME$" and the time fields count
// as what they are, one piece of text each, whatever stands in them; "%H" counts as nothing.
std::size_t CountWrittenArguments(std::string_view line);

}  // namespace brindle::host
