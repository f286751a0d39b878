// Search paths in texts. Tested in substitute_path_test.cpp; compared with testing/slow_paths.h in fuzz/.
#include "brindle/macro/path_expansion.h"

#include <algorithm>

#include "brindle/library/string_table.h"
#include "brindle/macro/ini_string.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/macro_slots.h"
#include "brindle/platform/environment.h"

namespace brindle {
namespace {

constexpr auto kNone = std::string_view::npos;
constexpr std::size_t kLongestDirectory = 1'023;  // after its environment variables are expanded
constexpr int kChunk = 512;

std::string_view WithoutTail(std::string_view text) {
    const std::size_t last = text.find_last_not_of("/\\ \t");
    return text.substr(0, last == kNone ? 0 : last + 1);
}

bool HoldsMacro(std::string_view text) {
    const std::size_t first = text.find('$');
    return first != kNone && text.find('$', first + 1) != kNone;
}

std::string Shown(std::string text) {
    ReplaceEvery(text, kDollarMarker, "$$");
    return text;
}

std::string LookUp(const std::string& name, const char* iniFile) {
    CStringA value;
    GetIniString(LoadStringResource(kTextSearchPath), name.c_str(), "", value, iniFile, kChunk);
    if (IMacroObserver* observer = g_macroSlots.observer)
        observer->OnSearchPath(name.c_str(), value.IsEmpty() ? nullptr : value.GetString());
    return std::move(value.str());
}

}  // namespace

void ReplaceEvery(std::string& text, std::string_view from, std::string_view to) {
    std::size_t at = text.find(from);
    if (at == std::string::npos) return;
    std::string replaced;
    std::size_t begin = 0;
    for (; at != std::string::npos; at = text.find(from, begin)) {
        replaced.append(text, begin, at - begin).append(to);
        begin = at + from.size();
    }
    text = replaced.append(text, begin);
}

std::vector<std::string_view> SplitList(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) parts.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string PathExpansion::Expand(std::string text) const {
    IMacroObserver* const observer = g_macroSlots.observer;
    for (int pass = 1;; ++pass) {
        std::string next = Pass(text);
        if (observer) observer->OnPass(pass, Shown(next).c_str());
        const bool more = HoldsMacro(next) && next != text;
        text = std::move(next);
        if (!more) return text;
        if (pass < kMostPasses && text.size() <= kMostBytes) continue;
        if (observer) observer->OnEndless(Shown(text).c_str());
        return text;
    }
}

std::string PathExpansion::Pass(const std::string& text) const {
    CStringA line(text);
    ReplaceEvery(line.str(), "$$", kDollarMarker);
    if (m_format) FormatWith(line, m_arguments);
    const std::vector<std::string_view> elements = SplitList(line.view(), ';');
    std::string result;
    for (std::size_t i = 0; i < elements.size(); ++i)
        AppendElement(elements[i], i + 1 == elements.size(), result);
    return result;
}

void PathExpansion::AppendElement(std::string_view element, bool last, std::string& result) const {
    element = WithoutTail(element);
    const std::size_t open = element.find('$');
    const std::size_t close = open == kNone ? kNone : element.find('$', open + 1);
    if (close == kNone || result.size() > kMostInPass) {
        result.append(element).append(last ? "" : ";");
        return;
    }
    const std::string name(element.substr(open + 1, close - open - 1));
    const std::string_view suffix = element.substr(close + 1);
    std::string value = LookUp(name, m_iniFile);
    if (value.empty()) {
        // Kept: what stands before the macro is dropped.
        result.append("?").append(name).append("?").append(suffix).append(last ? "" : ";");
        return;
    }
    // Kept: no ";" follows the last directory, also when another element comes.
    AppendDirectories(element.substr(0, open), std::move(value), suffix, result);
}

void PathExpansion::AppendDirectories(std::string_view prefix, std::string value, std::string_view suffix,
                                      std::string& result) const {
    ReplaceEvery(value, "$$", kDollarMarker);
    const std::vector<std::string_view> directories = SplitList(value, ';');
    for (std::size_t i = 0; i < directories.size() && result.size() <= kMostInPass; ++i) {
        result.append(prefix);
        result.append(ExpandEnvironment(WithoutTail(directories[i]), kLongestDirectory));
        result.append(suffix).append(i + 1 == directories.size() ? "" : ";");
    }
}

}  // namespace brindle
