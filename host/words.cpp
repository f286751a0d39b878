// Text helpers of the host. Tests: host_values_test.cpp.
#include "host/words.h"

#include <charconv>
#include <cmath>

namespace brindle::host {

namespace {

constexpr char Lower(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string_view Trimmed(std::string_view text) noexcept {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    if (text.empty()) return parts;
    for (;;) {
        const std::size_t end = text.find(separator);
        parts.push_back(Trimmed(text.substr(0, end)));
        if (end == std::string_view::npos) return parts;
        text.remove_prefix(end + 1);
    }
}

bool SameWord(std::string_view a, std::string_view b) noexcept {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (Lower(a[i]) != Lower(b[i])) return false;
    return true;
}

bool ParseInt(std::string_view text, int& value) noexcept {
    int parsed = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, parsed);
    if (error != std::errc{} || stop != end) return false;
    value = parsed;
    return true;
}

bool ParseReal(std::string_view text, double& value) noexcept {
    double parsed = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, parsed);
    if (error != std::errc{} || stop != end || !std::isfinite(parsed)) return false;
    value = parsed;
    return true;
}

std::string RealText(double value) {
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string RealText(float value) {
    char buffer[32];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr};
}

std::string Replaced(std::string_view text, std::string_view from, std::string_view to) {
    std::string result;
    if (from.empty()) return std::string(text);
    for (;;) {
        const std::size_t at = text.find(from);
        result += text.substr(0, at);
        if (at == std::string_view::npos) return result;
        result += to;
        text.remove_prefix(at + from.size());
    }
}

}  // namespace brindle::host
