// SlowFormat: the "%" and "#" fields of command lines as a plain chain of replacements over the whole line, each
// before the next. The oracle of the formatting tests and of the fuzz target.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace brindle::testing {

struct SlowFormat {
    struct Address {
        unsigned net = 0;
        unsigned unit = 0;
        unsigned port = 0;
    };
    using Text = std::optional<std::string>;

    // Absent values are empty; n and q are absent when -1.
    std::optional<Address> address;
    Text path, caption, text, help, r;
    int status = 0;
    int n = -1;
    int q = -1;
    // The host: absent when none is registered. The hash function gets the body of a field that names no address.
    std::optional<int> addressStatus;
    std::function<std::string(const std::string& body)> hash;
    // The texts of the date tokens, in their order of replacement.
    std::array<std::string, 11> dates{};

    static void Replace(std::string& line, const std::string& from, const std::string& to) {
        for (std::size_t at = 0; (at = line.find(from, at)) != std::string::npos; at += to.size())
            line.replace(at, from.size(), to);
    }

    static std::string Printed(const char* format, unsigned value) {
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, format, value);
        return buffer;
    }

    static std::string Colour(int code) {
        if (code < 1) return "Black";
        if (code == 1) return "Green";
        return code == 2 ? "Yellow" : "Red";
    }

    void PercentStage(std::string& line) const {
        static constexpr const char* kTokens[] = {"%dd%",   "%MM%", "%yyyy%", "%ddd%", "%dddd%", "%MMM%",
                                                  "%MMMM%", "%z%",  "%H%",    "%m%",   "%s%"};
        Replace(line, "%%", "\x03\x02\x01");
        for (std::size_t i = 0; i < dates.size(); ++i) Replace(line, kTokens[i], dates[i]);
        if (n != -1) Replace(line, "%n", std::to_string(n));
        if (q != -1) Replace(line, "%q", std::to_string(q));
        if (address) {
            const std::string net = Printed("%04X", address->net);
            const std::string unit = Printed("%02X", address->unit);
            const std::string port = Printed("%02X", address->port);
            Replace(line, "%a", net + ":" + unit + ":" + port);
            Replace(line, "%N", net);
            Replace(line, "%U", unit);
            Replace(line, "%P", port);
        }
        if (path) Replace(line, "%p", *path);
        if (caption) Replace(line, "%c", *caption);
        if (text) Replace(line, "%t", *text);
        if (text) Replace(line, "%h", help.value_or(""));
        Replace(line, "%i", std::to_string(status));
        if (address && addressStatus) {
            Replace(line, "%j", std::to_string(*addressStatus));
            Replace(line, "%v", Colour(*addressStatus));
        }
        Replace(line, "%s", Colour(status));
        if (r) Replace(line, "%r", *r);
        Replace(line, "\x03\x02\x01", "%");
    }

    void Run(std::string& line) const {
        const bool hasHash = line.find('#') != std::string::npos;
        if (line.find('%') != std::string::npos) PercentStage(line);
        if (!line.empty() && line[0] == '.') line = path.value_or("") + "\\" + line;
        if (!hash || !hasHash) return;
        std::string built;
        while (!line.empty()) {
            const std::size_t first = line.find('#');
            const std::size_t second = first == std::string::npos ? first : line.find('#', first + 1);
            if (second == std::string::npos) {
                built += line;
                break;
            }
            built += line.substr(0, first) + hash(line.substr(first + 1, second - first - 1));
            line = line.substr(second + 1);
        }
        line = built;
    }
};

}  // namespace brindle::testing
