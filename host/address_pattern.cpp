// The address condition of triggers and the address of a state to send. Tests: host_values_test.cpp.
#include "host/address_pattern.h"

#include "host/words.h"

namespace brindle::host {

namespace {

FullAddress_t Parts(const CAddressOv& address) {
    FullAddress_t parts{};
    address.GetFullAddressStruct(parts);
    return parts;
}

}  // namespace

std::string AddressText(const CAddressOv& address) {
    if (address.IsNetDeferred() && address.IsUnitDeferred() && address.IsPortDeferred()) return {};
    CAddressOv copy(address);
    std::string text = address.IsNetDeferred() ? "?" : copy.GetNetString().str();
    text += ':';
    text += address.IsUnitDeferred() ? "?" : copy.GetUnitString().str();
    text += ':';
    text += address.IsPortDeferred() ? "?" : copy.GetPortString().str();
    return text;
}

std::string AddressPattern::Parse(std::string_view text) {
    text = Trimmed(text);
    CAddressOv address;
    if (!text.empty() && !address.SetAddress(std::string(text).c_str()))
        return "\"" + std::string(text) + "\" is not an address such as 0001:02:03 or 0001:02:?";
    m_address = address;
    return {};
}

std::string AddressPattern::Text() const {
    return AddressText(m_address);
}

bool AddressPattern::Matches(const CAddressOv& address) const noexcept {
    const FullAddress_t wanted = Parts(m_address);
    const FullAddress_t given = Parts(address);
    if (!m_address.IsNetDeferred() && (address.IsNetDeferred() || wanted.net != given.net)) return false;
    if (!m_address.IsUnitDeferred() && (address.IsUnitDeferred() || wanted.unit != given.unit)) return false;
    return m_address.IsPortDeferred() || (!address.IsPortDeferred() && wanted.port == given.port);
}

CAddressOv AddressPattern::Completed(const CAddressOv& defaults) const {
    FullAddress_t parts{};
    m_address.GetFullAddressStruct(parts, Parts(defaults));
    return CAddressOv(parts);
}

}  // namespace brindle::host
