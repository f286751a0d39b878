// FullAddress_t: the plain four-byte address record used where an address crosses a plain function interface.
#pragma once

#include <cstdint>

// Field order and widths are part of the binary interface.
struct FullAddress_t {
    std::uint16_t net;
    std::uint8_t unit;
    std::uint8_t port;
};

static_assert(sizeof(FullAddress_t) == 4);
