// Interfaces by identifier: how an object is asked for another of its interfaces, as the desktop's objects are. Plain
// values; what they stand for is said where an identifier is defined.
#pragma once

#include <cstdint>

// An interface's identifier, {Data1-Data2-Data3-Data4 in two groups of 2 and 6}.
struct GUID {
    std::uint32_t Data1 = 0;
    std::uint16_t Data2 = 0;
    std::uint16_t Data3 = 0;
    std::uint8_t Data4[8] = {};

    friend constexpr bool operator==(const GUID&, const GUID&) noexcept = default;
};

// Negative: a failure.
using HRESULT = std::int32_t;
constexpr HRESULT kInterfaceOk = 0;
constexpr HRESULT kInterfaceNone = static_cast<HRESULT>(0x80004002);     // no such interface
constexpr HRESULT kInterfacePointer = static_cast<HRESULT>(0x80004003);  // null where something is written
constexpr HRESULT kInterfaceFailed = static_cast<HRESULT>(0x80004005);   // anything else
