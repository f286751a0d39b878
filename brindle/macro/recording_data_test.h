// For the tests of this folder: a host that writes down what it is asked, and guards for the two slots.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>

#include "brindle/address/full_address.h"
#include "brindle/macro/brindle_data.h"
#include "brindle/macro/command_line.h"

namespace brindle::testing {

// Answers "<name>" to every hash field.
class RecordingData final : public IBrindleData {
  public:
    int GetAddressStatus(const FullAddress_t* address) override {
        if (fail) throw std::runtime_error("host");
        calls += "status " + Text(address) + ";";
        return status;
    }
    CStringA GetHashFieldValue(const FullAddress_t* address, const char* fieldName) override {
        if (fail) throw std::runtime_error("host");
        calls += std::string(fieldName) + "@" + Text(address) + ";";
        return "<" + std::string(fieldName) + ">";
    }
    void WriteCommandLog(const char* line) override { calls += std::string("log ") + line + ";"; }
    int SelectActions(CCommandBehaviourList&, int, brindle::eHostType) override { return 0; }

    static std::string Text(const FullAddress_t* address) {
        char text[16];
        std::snprintf(text, sizeof text, "%04X:%02X:%02X", static_cast<unsigned>(address->net),
                      static_cast<unsigned>(address->unit), static_cast<unsigned>(address->port));
        return text;
    }

    int status = 0;
    bool fail = false;
    std::string calls;
};

class ScopedData {
  public:
    explicit ScopedData(IBrindleData* data) : m_previous(RegisteredBrindleData()) {
        RegisterIBrindleData(data);
    }
    ScopedData(const ScopedData&) = delete;
    ScopedData& operator=(const ScopedData&) = delete;
    ~ScopedData() { RegisterIBrindleData(m_previous); }

  private:
    IBrindleData* m_previous;
};

class ScopedHook {
  public:
    explicit ScopedHook(PreFormatHook hook) : m_previous(AttachPreFormatHook(hook)) {}
    ScopedHook(const ScopedHook&) = delete;
    ScopedHook& operator=(const ScopedHook&) = delete;
    ~ScopedHook() { AttachPreFormatHook(m_previous); }

  private:
    PreFormatHook m_previous;
};

}  // namespace brindle::testing
