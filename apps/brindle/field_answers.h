// FieldAnswers: the host's part of command-line formatting, played from the command line: field values and device
// states that the user gave. What is asked is told to a listener, for the trace.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/macro/brindle_data.h>

#include <functional>
#include <string>
#include <vector>

namespace brindle::tool {

class FieldAnswers final : public IBrindleData {
  public:
    using Listener = std::function<void(const std::string& question, const std::string& answer)>;

    // "[ADDRESS,]NAME=VALUE" and "ADDRESS=N"; both throw Failure for what they cannot read. The text before the
    // first "," is an address only if it parses. An open part of an address stands for every number.
    void AddField(const std::string& text);
    void AddState(const std::string& text);
    bool IsEmpty() const noexcept { return m_fields.empty() && m_states.empty(); }
    void SetListener(Listener listener) { m_listener = std::move(listener); }

    // The answer given for that address goes before one for all addresses, one with fewer open parts before one
    // with more, and of two alike the later one. Unknown: 0, and nothing.
    int GetAddressStatus(const FullAddress_t* address) override;
    CStringA GetHashFieldValue(const FullAddress_t* address, const char* fieldName) override;
    void WriteCommandLog(const char*) override {}
    int SelectActions(CCommandBehaviourList&, int, eHostType) override { return 0; }

  private:
    struct Answer {
        CAddressOv where;  // every part open: everywhere
        bool hasAddress;
        std::string name;  // of a field
        std::string value;
        int state;
    };
    static const Answer* Best(const std::vector<Answer>& answers, const FullAddress_t& address,
                              std::string_view name);
    void Tell(const std::string& question, const FullAddress_t& address, const std::string& answer) const;

    std::vector<Answer> m_fields;
    std::vector<Answer> m_states;
    Listener m_listener;
};

}  // namespace brindle::tool
