// CAddressOv. Text is read twice: ParseNumbers takes the plain form "12:3:4"; what it refuses goes to
// ParseParts, which knows deferred parts. Tests: address_ov_test.cpp, and address_layout_test.cpp for the
// order of fields and slots.
#include "brindle/address/address_ov.h"

#include "brindle/framework/archive.h"
#include "brindle/framework/number_text.h"

namespace {

constexpr std::uint32_t kNetMask = 0xFFFF;
constexpr std::uint32_t kUnitMask = 0xFF;
constexpr std::uint32_t kPortMask = 0xFF;

constexpr std::uint16_t kArchiveVersion = 1;  // stored: do not change

CObject* CreateAddress() {
    return new CAddressOv;
}

bool SkipColon(std::string_view& text) noexcept {
    if (text.empty() || text.front() != ':') return false;
    text.remove_prefix(1);
    return true;
}

// One part of an address text. Nothing or only "?" defers it and keeps the number; else the text must begin
// with a hexadecimal number, which is kept uncut. Text behind the number is ignored.
bool ParsePart(std::string_view text, std::uint32_t& number, bool& deferred) noexcept {
    deferred = text.find_first_not_of('?') == std::string_view::npos;
    return deferred || brindle::ReadStreamHex(text, number);
}

}  // namespace

constinit const CRuntimeClass CAddressOv::classCAddressOv = {"CAddressOv",   sizeof(CAddressOv),     0,
                                                             &CreateAddress, &CObject::classCObject, nullptr};

CAddressOv::CAddressOv() noexcept : m_netDeferred(true), m_unitDeferred(true), m_portDeferred(true) {}

CAddressOv::CAddressOv(const FullAddress_t& address) noexcept
    : m_net(address.net), m_unit(address.unit), m_port(address.port) {}

// Kept: a copy is cut to the meaningful range, the three numbers of the next constructor are not.
CAddressOv::CAddressOv(const CAddressOv& other) noexcept
    : CObject(other),
      m_net(other.m_net & kNetMask),
      m_unit(other.m_unit & kUnitMask),
      m_port(other.m_port & kPortMask),
      m_netDeferred(other.m_netDeferred),
      m_unitDeferred(other.m_unitDeferred),
      m_portDeferred(other.m_portDeferred) {}

CAddressOv::CAddressOv(unsigned int net, unsigned int unit, unsigned int port) noexcept
    : m_net(net), m_unit(unit), m_port(port) {}

CAddressOv::CAddressOv(unsigned long packed) noexcept {
    Unpack(static_cast<std::uint32_t>(packed));
}

CAddressOv::CAddressOv(const char* text) noexcept {
    SetAddress(text);
}

CAddressOv& CAddressOv::operator=(const CAddressOv& other) {
    if (this != &other) SetAddress(other);
    return *this;
}

const CRuntimeClass* CAddressOv::GetRuntimeClass() const {
    return &classCAddressOv;
}

CAddressOv::~CAddressOv() = default;

void CAddressOv::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive << kArchiveVersion << m_net << m_unit << m_port;
        return;
    }
    std::uint16_t version = 0;
    archive >> version >> m_net >> m_unit >> m_port;  // Kept: any version word is accepted
}

int CAddressOv::SetAddress(const CAddressOv& other) {
    m_net = other.m_net & kNetMask;
    m_unit = other.m_unit & kUnitMask;
    m_port = other.m_port & kPortMask;
    m_netDeferred = other.m_netDeferred;
    m_unitDeferred = other.m_unitDeferred;
    m_portDeferred = other.m_portDeferred;
    return 1;
}

int CAddressOv::SetAddress(const FullAddress_t& address) noexcept {
    m_net = address.net;
    m_unit = address.unit;
    m_port = address.port;
    ClearDeferred();
    return 1;
}

int CAddressOv::SetAddress(unsigned long packed) noexcept {
    Unpack(static_cast<std::uint32_t>(packed));
    ClearDeferred();
    return 1;
}

int CAddressOv::SetAddress(const char* text) noexcept {
    if (!text) return 0;
    return ParseNumbers(text) || ParseParts(text) ? 1 : 0;
}

// "%X:%X:%X". The parts are 0 when this fails; the deferred flags are then untouched.
bool CAddressOv::ParseNumbers(const char* text) noexcept {
    m_net = m_unit = m_port = 0;
    std::string_view rest = text;
    std::uint32_t net = 0;
    std::uint32_t unit = 0;
    std::uint32_t port = 0;
    const bool complete = brindle::ScanHex(rest, net) && SkipColon(rest) && brindle::ScanHex(rest, unit) &&
                          SkipColon(rest) && brindle::ScanHex(rest, port);
    if (!complete) return false;
    m_net = net & kNetMask;
    m_unit = unit & kUnitMask;
    m_port = port & kPortMask;
    ClearDeferred();
    return true;
}

// Kept: the numbers read here are not cut to their range, unlike those of ParseNumbers.
bool CAddressOv::ParseParts(std::string_view text) noexcept {
    text = text.substr(0, text.find(','));
    const std::size_t first = text.find(':');
    if (first == std::string_view::npos) return false;
    const std::size_t second = text.find(':', first + 1);
    if (second == std::string_view::npos) return false;
    const bool net = ParsePart(text.substr(0, first), m_net, m_netDeferred);
    const bool unit = ParsePart(text.substr(first + 1, second - first - 1), m_unit, m_unitDeferred);
    const bool port = ParsePart(text.substr(second + 1), m_port, m_portDeferred);
    return net && unit && port;
}

CStringA CAddressOv::GetString() {
    return GetNetString() + ":" + GetUnitString() + ":" + GetPortString();
}

int CAddressOv::IsAddressSame(const CAddressOv& other) const {
    return *this == other ? 1 : 0;
}

std::uint32_t CAddressOv::GetDWord() const {
    return (m_net << 16) | ((m_unit & 0xFFFF) << 8) |
           m_port;  // Kept: parts out of range spill into neighbours
}

CStringA CAddressOv::GetNetString() {
    return brindle::PrintHex(m_net, 4);
}

CStringA CAddressOv::GetUnitString() {
    return brindle::PrintHex(m_unit, 2);
}

CStringA CAddressOv::GetPortString() {
    return brindle::PrintHex(m_port, 2);
}

void CAddressOv::GetFullAddressStruct(FullAddress_t& out) const {
    out.net = static_cast<std::uint16_t>(m_net);
    out.unit = static_cast<std::uint8_t>(m_unit);
    out.port = static_cast<std::uint8_t>(m_port);
}

void CAddressOv::GetFullAddressStruct(FullAddress_t& out, const FullAddress_t& defaults) const noexcept {
    out.net = m_netDeferred ? defaults.net : static_cast<std::uint16_t>(m_net);
    out.unit = m_unitDeferred ? defaults.unit : static_cast<std::uint8_t>(m_unit);
    out.port = m_portDeferred ? defaults.port : static_cast<std::uint8_t>(m_port);
}

bool CAddressOv::operator==(const CAddressOv& other) const noexcept {
    return m_unit == other.m_unit && m_port == other.m_port && m_net == other.m_net;
}

void CAddressOv::Unpack(std::uint32_t packed) noexcept {
    m_net = packed >> 16;
    m_unit = (packed >> 8) & kUnitMask;
    m_port = packed & kPortMask;
}

void CAddressOv::ClearDeferred() noexcept {
    m_netDeferred = m_unitDeferred = m_portDeferred = false;
}
