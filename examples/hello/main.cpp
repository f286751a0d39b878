// The smallest host: completes a device address, fills a variable in, and formats a command line.
#include <brindle/brindle.h>

#include <iostream>

int main() {
    FullAddress_t device{};
    CAddressOv("12:?:4").GetFullAddressStruct(device, FullAddress_t{1, 7, 1});  // the open unit is 7
    VariableManager variables;
    variables.addVariable(Variable("desk", "Studio A"));
    CStringA line = "play --desk \"{desk}\" --device %a --status %i";
    variables.resolve(line);
    FormatCommandLine(line, &device, nullptr, nullptr, nullptr, nullptr, 2);
    std::cout << line.GetString() << "\n";  // play --desk "Studio A" --device 0012:07:04 --status 2
}
