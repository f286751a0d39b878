// Lines for people. What follows from an event is indented below it: the trigger by one step, its actions by
// two. Tests: run_test.cpp.
#include "host/run_text.h"

#include <algorithm>

#include "host/host_files.h"
#include "host/words.h"

namespace brindle::host {

namespace {

constexpr std::size_t kTimeWidth = 9;
constexpr std::size_t kKindWidth = 9;

// Characters a UTF-8 text shows.
std::size_t Width(std::string_view utf8) noexcept {
    return static_cast<std::size_t>(std::count_if(
        utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

std::string PaddedTo(std::string text, std::size_t width) {
    const std::size_t shown = Width(text);
    if (shown < width) text.append(width - shown, ' ');
    return text;
}

std::string Text(const RunRecord& record, const char* key) {
    const auto found = record.find(key);
    if (found == record.end()) return {};
    if (found->is_number_float()) return RealText(found->get<double>());
    return found->is_string() ? found->get<std::string>() : found->dump();
}

std::string SecondsOf(const RunRecord& record, const char* key) {
    const auto found = record.find(key);
    return found == record.end() ? std::string() : SecondsText(found->get<std::uint64_t>());
}

// Control characters would break the columns, or do worse to a terminal.
std::string Harmless(std::string text) {
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = ' ';
    return text;
}

// The values of a rule: "0001:02:03,State=3; Colour unknown".
std::string Values(const RunRecord& record) {
    std::string text;
    for (const RunRecord& value : record.at("values")) {
        if (!text.empty()) text += "; ";
        if (value.contains("address")) text += Text(value, "address") + ",";
        text += Text(value, "name");
        text += value.contains("value") ? "=" + Text(value, "value") : std::string(" unknown");
    }
    return Harmless(std::move(text));
}

}  // namespace

std::string SecondsText(std::uint64_t milliseconds) {
    std::string fraction = std::to_string(milliseconds % 1000);
    fraction.insert(0, 3 - fraction.size(), '0');
    return std::to_string(milliseconds / 1000) + "." + fraction;
}

RunText::RunText(const Site& site, Painter painter) : m_paint(std::move(painter)), m_objectWidth(4) {
    for (const auto& object : site.objects)
        m_objectWidth = std::max(m_objectWidth, Width(TextToUtf8(object->plan.name)));
}

std::string RunText::Line(const RunRecord& record) const {
    std::string time = SecondsText(record.at("t").get<std::uint64_t>());
    if (time.size() < kTimeWidth) time.insert(0, kTimeWidth - time.size(), ' ');
    const std::string object = PaddedTo(Harmless(Text(record, "object")), m_objectWidth);
    return m_paint(TextStyle::kTime, time) + "  " + m_paint(TextStyle::kObject, object) + "  " + What(record);
}

std::string RunText::What(const RunRecord& record) const {
    const std::string kind = Text(record, "kind");
    if (kind == "event") return Event(record);
    if (kind == "verdict") return Verdict(record);
    if (kind == "unlock") return Unlock(record);
    if (kind == "repeat" || kind == "schedule") return Repeat(record);
    if (kind == "snmp") return Snmp(record);
    if (kind == "start")
        return m_paint(TextStyle::kEvent, "start") + "  " + Harmless(Text(record, "site")) + ", " +
               Text(record, "objects") + " objects";
    if (kind == "end")
        return m_paint(TextStyle::kEvent, "end") + "  " + Text(record, "why") + ", " +
               Text(record, "events") + " events";
    if (kind == "reload") return Reload(record);
    if (kind == "skipped")
        return m_paint(TextStyle::kQuiet, "     -> " + PaddedTo("skipped", kKindWidth) +
                                              Harmless(Text(record, "action")) + ": " + Text(record, "why"));
    return Outcome(record);
}

std::string RunText::Event(const RunRecord& record) const {
    std::string line = m_paint(TextStyle::kEvent, Text(record, "event"));
    if (record.contains("device")) line += " " + Harmless(Text(record, "device"));
    if (record.contains("address")) line += " " + Text(record, "address");
    for (const char* key : {"state", "value", "zone"})
        if (record.contains(key))
            line += std::string(key == std::string_view("state") ? " = " : " at ") + Text(record, key);
    if (record.contains("toggle")) line += record["toggle"].get<bool>() ? " on" : " off";
    if (record.contains("checked")) line += record["checked"].get<bool>() ? " checked" : " unchecked";
    if (record.contains("masked")) line += " masked";
    for (const char* key : {"header", "cause", "text", "user", "key", "keyValue"})
        if (record.contains(key)) line += "  " + Harmless(Text(record, key));
    if (record.contains("sent")) line += m_paint(TextStyle::kQuiet, "  (sent by an action)");
    return line;
}

std::string RunText::Reload(const RunRecord& record) const {
    std::string line = m_paint(TextStyle::kEvent, "reload") + "  " + Harmless(Text(record, "file"));
    for (const char* key : {"kept", "added", "set", "removed"})
        if (record.contains(key)) line += ", " + Text(record, key) + " " + key;
    return line;
}

std::string RunText::Verdict(const RunRecord& record) const {
    constexpr const char* kWords[] = {"stays out", "ends", "fires"};
    constexpr TextStyle kStyles[] = {TextStyle::kQuiet, TextStyle::kEnds, TextStyle::kFires};
    const int verdict = std::clamp(record.at("verdict").get<int>(), 0, 2);
    std::string text = Harmless(Text(record, "trigger")) + " " + kWords[verdict];
    if (record.contains("disabled")) text += " (disabled)";
    std::string why = ": " + Text(record, "why");
    if (record.contains("values")) why += " [" + Values(record) + "]";
    return "  " + m_paint(kStyles[verdict], "-> " + text) + m_paint(TextStyle::kQuiet, why);
}

// Of a request to an SNMP agent, with whom and for what.
std::string RunText::Failure(const RunRecord& record) {
    const std::string why = Harmless(Text(record, "why"));
    if (!record.contains("oid")) return why;
    return Harmless("snmp " + Text(record, "what") + " " + Text(record, "agent") + " " + Text(record, "oid") +
                    ": ") +
           why;
}

std::string RunText::Outcome(const RunRecord& record) const {
    const std::string kind = Text(record, "kind");
    std::string what;
    if (kind == "command") what = Text(record, "line");
    if (kind == "program") what = Text(record, "line");
    if (kind == "log") what = Text(record, "text");
    if (kind == "variable")
        what = Text(record, "name") + " = " + Text(record, "value") + " (" + Text(record, "scope") + ")";
    if (kind == "send") what = Event(record);
    if (kind == "failure") what = m_paint(TextStyle::kFailure, Failure(record));
    if (kind != "send" && kind != "failure") what = Harmless(what);
    // What a timer runs has no event line above it, so it says whose it is.
    const std::string by = Text(record, "by");
    std::string line = by == "repeat" || by == "schedule"
                           ? m_paint(TextStyle::kEvent, by) + " " + Harmless(Text(record, "trigger")) + " -> "
                           : std::string("     -> ");
    line += m_paint(TextStyle::kAction, PaddedTo(kind, kKindWidth)) + what;
    if (record.contains("dryRun")) line += m_paint(TextStyle::kQuiet, "  (dry run)");
    return line;
}

// Answers come at any time, so a line of theirs says whose it is.
std::string RunText::Snmp(const RunRecord& record) const {
    const std::string what = Text(record, "what");
    std::string line = m_paint(TextStyle::kEvent, "snmp") + " " + what;
    if (what == "poll") {
        line += " " + Harmless(record.contains("device") ? Text(record, "device") : Text(record, "address"));
        const char* separator = ": ";
        const RunRecord values = record.value("values", RunRecord::object());
        for (const auto& [name, value] : values.items()) {
            line += separator + Harmless(name + " = " + value.get<std::string>());
            separator = ", ";
        }
        if (record.contains("why"))
            line += separator + m_paint(TextStyle::kFailure, Harmless(Text(record, "why")));
        return line;
    }
    line += " " + Harmless(Text(record, "agent") + " " + Text(record, "oid"));
    if (record.contains("value"))
        line += " = " + m_paint(TextStyle::kAction, Harmless(Text(record, "value")));
    if (record.contains("name"))
        line += Harmless(" -> " + Text(record, "name") + " (" + Text(record, "scope") + ")");
    line += m_paint(TextStyle::kQuiet, Harmless("  for " + Text(record, "action")));
    return record.contains("sent") ? line + m_paint(TextStyle::kQuiet, "  (not sent)") : line;
}

std::string RunText::Repeat(const RunRecord& record) const {
    const std::string what = Text(record, "what");
    const std::string kind = Text(record, "kind");
    std::string text = PaddedTo(kind, kKindWidth) + Harmless(Text(record, "action"));
    if (what == "added" && record.contains("period"))
        text += " every " + SecondsOf(record, "period") + " s, next at " + SecondsOf(record, "due");
    else if (what == "added" || what == "runs")
        text += ", next at " + SecondsOf(record, "due");
    else
        text += what == "kept" ? " goes on" : " is over";
    return "     -> " + m_paint(TextStyle::kQuiet, text);
}

std::string RunText::Unlock(const RunRecord& record) const {
    const bool allowed = record.at("allowed").get<bool>();
    std::string line = m_paint(TextStyle::kEvent, "unlock?") + " " + Event(record) + "  ";
    if (!allowed) return line + m_paint(TextStyle::kEnds, "refused: no action allows it");
    line += m_paint(TextStyle::kFires, "allowed");
    return line + " by " + Harmless(Text(record, "trigger")) + " -> " + Harmless(Text(record, "action"));
}

}  // namespace brindle::host
