// SlowPaths: the expansion of search paths written down step by step as it is explained, without formatting and
// without files. The oracle of the fuzz target; only for small texts.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace brindle::testing {

class SlowPaths {
  public:
    // By name in lower case.
    using Macros = std::map<std::string, std::string>;

    // What a text without fields expands to; `environment` is not looked at.
    static std::string Expand(std::string text, const Macros& macros) {
        text = Replaced(text, "$$", kMarker);
        const std::size_t dollar = text.find('$');
        std::string head = dollar == std::string::npos ? "" : text.substr(0, dollar);
        std::string rest = dollar == std::string::npos ? text : text.substr(dollar);
        for (int pass = 1; pass <= 64; ++pass) {
            const std::string before = rest;
            rest = Pass(before, macros);
            const std::size_t first = rest.find('$');
            const bool two = first != std::string::npos && rest.find('$', first + 1) != std::string::npos;
            if (!two || rest == before || rest.size() > 65'536) break;
        }
        return Replaced(head, kMarker, "$") + Replaced(rest, kMarker, "$");
    }

  private:
    static constexpr const char* kMarker = "\x02\x03\x04";

    static std::string Replaced(std::string text, const std::string& from, const std::string& to) {
        for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            text.replace(at, from.size(), to);
        return text;
    }
    static std::vector<std::string> Tokens(const std::string& text) {
        std::vector<std::string> tokens(1);
        for (const char c : text) {
            if (c != ';')
                tokens.back() += c;
            else if (!tokens.back().empty())
                tokens.emplace_back();
        }
        if (tokens.back().empty()) tokens.pop_back();
        return tokens;
    }
    static std::string Trimmed(std::string text) {
        while (!text.empty() && std::string("/\\ \t").find(text.back()) != std::string::npos) text.pop_back();
        return text;
    }
    static std::string Lower(std::string text) {
        for (char& c : text)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        return text;
    }
    static std::string Pass(const std::string& input, const Macros& macros) {
        const std::vector<std::string> elements = Tokens(Replaced(input, "$$", kMarker));
        std::string result;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const std::string end = i + 1 == elements.size() ? "" : ";";
            const std::string element = Trimmed(elements[i]);
            const std::size_t open = element.find('$');
            const std::size_t close = open == std::string::npos ? open : element.find('$', open + 1);
            if (close == std::string::npos) {
                result += element + end;
                continue;
            }
            const std::string prefix = element.substr(0, open);
            const std::string name = element.substr(open + 1, close - open - 1);
            const std::string suffix = element.substr(close + 1);
            const auto found = macros.find(Lower(name));
            if (found == macros.end() || found->second.empty()) {
                result += "?" + name + "?" + suffix + end;
                continue;
            }
            const std::vector<std::string> parts = Tokens(Replaced(found->second, "$$", kMarker));
            for (std::size_t j = 0; j < parts.size(); ++j)
                result +=
                    prefix + Trimmed(parts[j]).substr(0, 1'023) + suffix + (j + 1 == parts.size() ? "" : ";");
        }
        return result;
    }
};

}  // namespace brindle::testing
