// RunText: the records of a run as lines for people: time, object, event -> trigger -> action, in columns.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "host/run_record.h"
#include "host/site.h"

namespace brindle::host {

enum class TextStyle { kPlain, kTime, kObject, kEvent, kFires, kEnds, kAction, kQuiet, kFailure };

class RunText {
  public:
    // Puts colours around a text; the text alone when there are none.
    using Painter = std::function<std::string(TextStyle style, std::string_view text)>;

    // The object column is as wide as the longest name of the site's objects.
    RunText(const Site& site, Painter painter);

    // One line without a line end, UTF-8.
    std::string Line(const RunRecord& record) const;

  private:
    std::string What(const RunRecord& record) const;
    std::string Event(const RunRecord& record) const;
    std::string Reload(const RunRecord& record) const;
    std::string Verdict(const RunRecord& record) const;
    std::string Outcome(const RunRecord& record) const;
    std::string Snmp(const RunRecord& record) const;
    static std::string Failure(const RunRecord& record);
    std::string Repeat(const RunRecord& record) const;
    std::string Unlock(const RunRecord& record) const;

    Painter m_paint;
    std::size_t m_objectWidth;
};

// Milliseconds as seconds with three decimals.
std::string SecondsText(std::uint64_t milliseconds);

}  // namespace brindle::host
