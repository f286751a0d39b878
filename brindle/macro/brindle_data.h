// IBrindleData: what the library asks of the host application. The host implements it, registers one object
// and keeps it alive; the library holds only the pointer.
//
// Thread: every operation is called on the thread that formats and runs command lines (the user interface's).
// Registration belongs there too, before the first command.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

struct FullAddress_t;
class CCommandBehaviourList;
namespace brindle {
enum eHostType : int;
}

class BRINDLE_API IBrindleData {
  public:
    // The status of the device at the address: 1 good, 2 warning, 3 and above alarm, 0 and below unknown.
    virtual int GetAddressStatus(const FullAddress_t* address) = 0;
    // The text a "#name#" field stands for at the address; the name may be anything the user typed.
    virtual CStringA GetHashFieldValue(const FullAddress_t* address, const char* fieldName) = 0;
    // Receives one line for every program the library starts.
    virtual void WriteCommandLog(const char* line) = 0;
    // Lets the user choose actions for the list; 1 when the choice was taken. What `selection` means is the
    // host's matter.
    virtual int SelectActions(CCommandBehaviourList& list, int selection, brindle::eHostType host) = 0;

  protected:
    ~IBrindleData() = default;  // never destroyed through this interface
};

// Registers the host's object in place of an earlier one; null unregisters. Nothing is called on it here.
BRINDLE_API void RegisterIBrindleData(IBrindleData* data) noexcept;

namespace brindle {
// The registered object, or null.
BRINDLE_API IBrindleData* RegisteredBrindleData() noexcept;
}  // namespace brindle
