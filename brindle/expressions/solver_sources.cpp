// Value sources. The collectors keep an index beside the list they fill, so that a long rule takes linear time.
// Tests: solver_test.cpp.
#include "brindle/expressions/solver_sources.h"

namespace brindle {

ListedValues::~ListedValues() = default;
AddressCollector::~AddressCollector() = default;
HeaderCollector::~HeaderCollector() = default;

bool ListedValues::Lookup(const CStringA& header, const CAddressOv* address, CStringA& value) const {
    for (const CSolver::Value& entry : m_values) {
        if (entry.header != header) continue;
        const bool fits = !entry.useAddress || !address ||
                          CAddressOv(static_cast<unsigned long>(entry.address)) == *address;
        if (!fits) continue;
        value = entry.value;
        return true;
    }
    return false;
}

AddressCollector::AddressCollector(CList<CAddressOv>& addresses) : m_addresses(addresses) {
    POSITION position = addresses.GetHeadPosition();
    while (position) {
        const POSITION at = position;
        m_index.emplace(addresses.GetNext(position).GetDWord(), at);
    }
}

bool AddressCollector::Holds(const CAddressOv& address) const {
    auto [entry, end] = m_index.equal_range(address.GetDWord());
    for (; entry != end; ++entry)
        if (m_addresses.GetAt(entry->second) == address) return true;
    return false;
}

bool AddressCollector::Lookup(const CStringA&, const CAddressOv* address, CStringA& value) const {
    value.Empty();
    if (!address || Holds(*address)) return true;
    const POSITION added = m_addresses.AddTail(*address);
    m_index.emplace(m_addresses.GetAt(added).GetDWord(), added);
    return true;
}

HeaderCollector::HeaderCollector(CList<CStringA>& headers) : m_headers(headers) {
    POSITION position = headers.GetHeadPosition();
    while (position) m_index.insert(headers.GetNext(position));
}

bool HeaderCollector::Lookup(const CStringA& header, const CAddressOv*, CStringA& value) const {
    value.Empty();
    if (m_index.insert(header).second) m_headers.AddTail(header);
    return true;
}

}  // namespace brindle
