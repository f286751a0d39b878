// CAddressOv: the address of one device: network, unit on that network, port on that unit. Each part may be
// deferred, that is left open and filled in later from a default address.
//
// The parts live in 32-bit fields. Which operations cut them to their meaningful range (net 0..0xFFFF, unit
// and port 0..0xFF) and which keep what they were given is said at each operation; the difference is part of
// the interface. Nothing here throws except Serialize. Thread: a value type without shared state.
#pragma once

#include <cstdint>
#include <string_view>

#include "brindle/address/full_address.h"
#include "brindle/framework/export.h"
#include "brindle/framework/object.h"
#include "brindle/framework/string_a.h"

namespace brindle {
struct LayoutProbe;  // the layout test's way in
}

class BRINDLE_API CAddressOv : public CObject {
  public:
    CAddressOv() noexcept;  // 0000:00:00, all three parts deferred
    // Nothing is deferred.
    CAddressOv(const FullAddress_t& address) noexcept;
    CAddressOv(const CAddressOv& other) noexcept;  // cuts the parts to their range
    CAddressOv(unsigned int net, unsigned int unit,
               unsigned int port) noexcept;  // keeps the numbers as given
    // A packed word: net in bits 31..16, unit in 15..8, port in 7..0; bits above 31 are ignored.
    CAddressOv(unsigned long packed) noexcept;
    // As SetAddress(const char*) on 0000:00:00 with nothing deferred; whether the text was an address is not
    // told.
    CAddressOv(const char* text) noexcept;

    // Through the virtual SetAddress; assigning an address to itself changes nothing.
    CAddressOv& operator=(const CAddressOv& other);

    // --- virtual operations, in slot order ---
    const CRuntimeClass* GetRuntimeClass() const override;
    ~CAddressOv() override;
    // 14 bytes: a 16-bit version word (written 1, not checked on loading), then net, unit, port as 32-bit
    // words. The deferred flags are not stored; loading leaves them. Throws CArchiveException; parts already
    // read stay.
    void Serialize(CArchive& archive) override;
    // Takes the other's parts cut to their range, and its deferred flags. Returns 1.
    virtual int SetAddress(const CAddressOv& other);
    // "%04X:%02X:%02X" of net, unit and port; longer numbers print in full, deferred parts with their
    // numbers.
    virtual CStringA GetString();
    // 1 when unit, port and net are equal as 32-bit numbers, else 0; deferred flags are not compared.
    virtual int IsAddressSame(const CAddressOv& other) const;
    // (net << 16) | ((unit & 0xFFFF) << 8) | port: a part out of its range spills into its neighbour's bits.
    virtual std::uint32_t GetDWord() const;
    virtual CStringA GetNetString();   // "%04X"
    virtual CStringA GetUnitString();  // "%02X"
    virtual CStringA GetPortString();  // "%02X"
    // The parts cut to the record's widths; deferred flags are ignored.
    virtual void GetFullAddressStruct(FullAddress_t& out) const;
    // --- end of the virtual operations ---

    int SetAddress(const FullAddress_t& address) noexcept;  // nothing deferred afterwards; returns 1
    int SetAddress(unsigned long packed) noexcept;          // nothing deferred afterwards; returns 1
    // Three hexadecimal numbers separated by ":" ("12:3:4"), cut to their range; text behind them is ignored.
    // A part that is empty or consists of "?" is deferred and its number is 0 ("12:?:4"); the other parts are
    // then kept uncut, and everything from the first "," on is ignored. Returns 1, or 0 when the text is no
    // address: a null text changes nothing, any other leaves what was read of it and 0 in the other parts.
    int SetAddress(const char* text) noexcept;

    // The address completed: each deferred part from `defaults` (which may be `out`), the others cut to the
    // record's widths.
    void GetFullAddressStruct(FullAddress_t& out, const FullAddress_t& defaults) const noexcept;

    bool IsDeferred() const noexcept { return m_netDeferred || m_unitDeferred || m_portDeferred; }
    bool IsNetDeferred() const noexcept { return m_netDeferred; }
    bool IsUnitDeferred() const noexcept { return m_unitDeferred; }
    bool IsPortDeferred() const noexcept { return m_portDeferred; }

    // Equality of the full 32-bit numbers; deferred flags are not compared.
    bool operator==(const CAddressOv& other) const noexcept;
    bool operator!=(const CAddressOv& other) const noexcept { return !(*this == other); }
    // The order of sorted containers: that of GetDWord.
    bool operator<(const CAddressOv& other) const { return GetDWord() < other.GetDWord(); }

    static const CRuntimeClass classCAddressOv;

  private:
    friend struct brindle::LayoutProbe;

    bool ParseNumbers(const char* text) noexcept;
    bool ParseParts(std::string_view text) noexcept;
    void Unpack(std::uint32_t packed) noexcept;
    void ClearDeferred() noexcept;

    std::uint32_t m_net = 0;
    std::uint32_t m_unit = 0;
    std::uint32_t m_port = 0;
    bool m_netDeferred = false;
    bool m_unitDeferred = false;
    bool m_portDeferred = false;
};
