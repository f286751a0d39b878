// RuleEdit: a rule that somebody is writing, and what there is to say about it at every key: whether it can be
// evaluated, else what is wrong and where; its names with what they stand for at this moment; its reverse Polish form;
// its result. It knows no window.
//
// Names are answered as a rule trigger's are: from the devices of the station, a name without an address from the
// device at the object's own. The work of one call is bounded whatever the text and the values are; what a limit keeps
// from being shown says so. Thread: the station's.
#pragma once

#include <brindle/address/address_ov.h>
#include <brindle/expressions/prepared_rule.h>

#include <string>
#include <string_view>
#include <vector>

namespace brindle::host {

class DeviceTable;

// A name of the rule and what it stands for.
struct RuleEditName {
    std::string text;    // as the rule writes it, with the address where it writes one
    std::string device;  // whose field it is, the object's own filled in; empty: no full address
    std::string type;    // of the value: "Int", "String" ...
    std::string value;   // the beginning of a long one, with " ..." behind it
    std::string why;     // why nobody answers it, so that it stands for itself; empty: it is answered

    friend bool operator==(const RuleEditName&, const RuleEditName&) = default;
};

// What the rule gives at this moment.
struct RuleEditResult {
    std::string type;    // empty: there is no result, and `why` says why not
    std::string value;   // as a name's
    bool holds = false;  // a trigger's condition would hold
    std::string why;

    friend bool operator==(const RuleEditResult&, const RuleEditResult&) = default;
};

class RuleEdit {
  public:
    static constexpr std::size_t kLongestRule = 65'536;  // bytes; a longer text is no valid rule here
    static constexpr std::size_t kMostNames = 64;        // that are listed
    static constexpr std::size_t kLongestShown =
        256;  // bytes of a value; of the reverse Polish form 16 times that
    // Bytes of the rule, the values in it and the texts made of them, for a rule to be evaluated at every key.
    static constexpr std::size_t kMostEvaluated = 2'048;

    // The devices are borrowed. `own`: the object's address, with open parts when there is none.
    RuleEdit(const DeviceTable& devices, const CAddressOv& own);

    // Another text, in the ANSI code page; looks everything up anew.
    void SetText(std::string_view text);
    // Looks the values up once more. True when something that is shown is another than before.
    bool Refresh();

    const std::string& Text() const noexcept { return m_text; }
    bool IsValid() const noexcept { return m_fault.ok(); }
    // What keeps the rule from being evaluated, with its column in bytes of the text (from 1; 0: no place).
    const Result& Fault() const noexcept { return m_fault; }
    // Each name once, in the order of the reverse Polish form, the first kMostNames; none of a rule that is not valid.
    const std::vector<RuleEditName>& Names() const noexcept { return m_names; }
    // How many there are that Names leaves out.
    std::size_t MoreNames() const noexcept { return m_moreNames; }
    // Empty when the rule is not valid.
    const std::string& ReversePolish() const noexcept { return m_reversePolish; }
    const RuleEditResult& Now() const noexcept { return m_now; }

  private:
    void FindNames();
    RuleEditName Answered(std::size_t index, const std::vector<RuleEditName>& before) const;
    RuleEditResult Evaluated() const;

    const DeviceTable& m_devices;
    CAddressOv m_own;
    std::string m_text;
    PreparedRule m_rule;
    Result m_fault;
    std::vector<RuleEditName> m_names;
    std::vector<std::size_t> m_indices;  // of the names in the rule
    std::size_t m_moreNames = 0;
    std::string m_reversePolish;
    RuleEditResult m_now;
};

}  // namespace brindle::host
