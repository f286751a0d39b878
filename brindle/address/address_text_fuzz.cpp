// Arbitrary bytes as an address text. What parses must come back from its own text form.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "brindle/address/address_ov.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    CAddressOv address;
    const bool parsed = address.SetAddress(text.c_str()) == 1;
    const CAddressOv cut(address);  // a text form reads back cut to the range
    CAddressOv again(address.GetString());
    if (again != cut || again.IsDeferred()) std::abort();
    if (parsed && CAddressOv(text.c_str()) != address) std::abort();
    FullAddress_t record{};
    address.GetFullAddressStruct(record, FullAddress_t{1, 2, 3});
    return 0;
}
