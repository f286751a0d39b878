// AddressPattern: the addresses a trigger listens to: an address text whose open parts ("?" or nothing)
// match any number. An empty text matches every event, also one that carries no address.
#pragma once

#include <brindle/address/address_ov.h>

#include <string>
#include <string_view>

namespace brindle::host {

class AddressPattern {
  public:
    AddressPattern() = default;
    explicit AddressPattern(const CAddressOv& address) : m_address(address) {}

    // Returns why the text is no address, or an empty text. On failure the pattern stays as it was.
    std::string Parse(std::string_view text);
    // Open parts as "?".
    std::string Text() const;
    bool Matches(const CAddressOv& address) const noexcept;
    // Whether some part is open.
    bool IsOpen() const noexcept { return m_address.IsDeferred(); }
    // The pattern as an address, its open parts taken from `defaults`.
    CAddressOv Completed(const CAddressOv& defaults) const;

  private:
    CAddressOv m_address;
};

// An address as texts show it: open parts as "?", and nothing when all three are open.
std::string AddressText(const CAddressOv& address);

}  // namespace brindle::host
