// SlowPattern: the classic pattern language as a tree, matched by following every place of the text that can be
// reached. Only for short texts.
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace brindle::testing {

class SlowPattern {
  public:
    explicit SlowPattern(const std::string& pattern) {
        m_text = "^";
        for (const char c : pattern) m_text += c == '%' ? std::string(".*") : std::string(1, c);
        m_text += "$";
        m_root = Alternatives();
        if (m_at < m_text.size()) m_valid = false;
    }
    bool IsValid() const { return m_valid; }
    bool Matches(const std::string& text) const { return m_root(text, {0}).count(text.size()) > 0; }

  private:
    using Places = std::set<std::size_t>;
    using Node = std::function<Places(const std::string&, const Places&)>;
    using Test = std::function<bool(char)>;

    char Peek() const { return m_at < m_text.size() ? m_text[m_at] : '\0'; }
    bool AtEnd() const { return m_at >= m_text.size(); }

    static Node One(Test test) {
        return [test](const std::string& text, const Places& from) {
            Places to;
            for (const std::size_t place : from)
                if (place < text.size() && test(text[place])) to.insert(place + 1);
            return to;
        };
    }
    static Node Sequence(Node first, Node second) {
        return [first, second](const std::string& text, const Places& from) {
            return second(text, first(text, from));
        };
    }
    static Node Either(Node first, Node second) {
        return [first, second](const std::string& text, const Places& from) {
            Places to = first(text, from);
            to.merge(second(text, from));
            return to;
        };
    }
    static Node Nothing() {
        return [](const std::string&, const Places& from) { return from; };
    }
    static Node Repeat(Node node) {
        return [node](const std::string& text, const Places& from) {
            Places to = from;
            for (std::size_t before = 0; before != to.size();) {
                before = to.size();
                to.merge(node(text, to));
            }
            return to;
        };
    }

    Node Alternatives() {
        Node node = Terms();
        while (m_valid && Peek() == '|' && !AtEnd()) {
            ++m_at;
            node = Either(node, Terms());
        }
        return node;
    }
    Node Terms() {
        Node node = Nothing();
        while (m_valid && !AtEnd() && Peek() != '|' && Peek() != ')' && Peek() != '}')
            node = Sequence(node, Term());
        return node;
    }
    Node Term() {
        const char c = m_text[m_at];
        if (c == '^' || c == '$') {
            ++m_at;
            return [c](const std::string& text, const Places& from) {
                const std::size_t wanted = c == '^' ? 0 : text.size();
                return from.count(wanted) ? Places{wanted} : Places{};
            };
        }
        Node node = Atom();
        while (m_valid && !AtEnd() && (Peek() == '*' || Peek() == '+' || Peek() == '?')) {
            const char repeat = m_text[m_at++];
            if (!AtEnd() && Peek() == '?') ++m_at;  // "as few as possible" matches the same texts
            if (repeat == '*') node = Repeat(node);
            if (repeat == '+') node = Sequence(node, Repeat(node));
            if (repeat == '?') node = Either(node, Nothing());
        }
        return node;
    }
    Node Atom() {
        const char c = m_text[m_at++];
        if (c == '(' || c == '{') {
            if (m_text.compare(m_at, 2, "?:") == 0) m_at += 2;
            Node node = Alternatives();
            m_valid = m_valid && !AtEnd() && Peek() == (c == '(' ? ')' : '}');
            ++m_at;
            return node;
        }
        if (c == '[') return Class();
        if (c == '\\') return Escape();
        if (c == '.') return One([](char) { return true; });
        m_valid = m_valid && c != '*' && c != '+' && c != '?';
        return One([c](char other) { return other == c; });
    }
    // Characters and ranges only.
    Node Class() {
        const bool complement = Peek() == '^';
        if (complement) ++m_at;
        std::set<char> members;
        while (!AtEnd() && Peek() != ']') {
            const char first = m_text[m_at++];
            members.insert(first);
            if (Peek() != '-' || m_at + 1 >= m_text.size() || m_text[m_at + 1] == ']') continue;
            const char last = m_text[m_at + 1];
            m_at += 2;
            if (last < first) m_valid = false;
            for (char c = first; c <= last; ++c) members.insert(c);
        }
        m_valid = m_valid && !AtEnd();
        ++m_at;
        return One([members, complement](char c) { return (members.count(c) > 0) != complement; });
    }
    static Node Exactly(char c) {
        return One([c](char other) { return other == c; });
    }
    // The byte that so many hexadecimal digits tell.
    Node Coded(std::size_t digits) {
        unsigned value = 0;
        for (std::size_t i = 0; i < digits; ++i) {
            const std::size_t digit =
                AtEnd() ? std::string::npos : std::string("0123456789abcdefABCDEF").find(m_text[m_at]);
            if (digit == std::string::npos) {
                m_valid = false;
                return Nothing();
            }
            value = value * 16 + static_cast<unsigned>(digit < 16 ? digit : digit - 6);
            ++m_at;
        }
        m_valid = m_valid && value <= 0xFF;
        return Exactly(static_cast<char>(value));
    }
    Node Escape() {
        const char c = AtEnd() ? '\0' : m_text[m_at++];
        const Test digit = [](char other) { return other >= '0' && other <= '9'; };
        const Test letter = [](char other) {
            return (other >= 'A' && other <= 'Z') || (other >= 'a' && other <= 'z');
        };
        const Test space = [](char other) { return other == ' ' || (other >= '\t' && other <= '\r'); };
        const auto oneOrMore = [](Node node) { return Sequence(node, Repeat(node)); };
        const auto quoted = [](char quote) {
            const Node mark = One([quote](char other) { return other == quote; });
            return Sequence(mark,
                            Sequence(Repeat(One([quote](char other) { return other != quote; })), mark));
        };
        switch (c) {
            case 'a':
                return One([=](char other) { return digit(other) || letter(other); });
            case 'b':
                return One([](char other) { return other == ' ' || other == '\t'; });
            case 'c':
                return One(letter);
            case 'd':
                return One(digit);
            case 'h':
                return One([=](char other) {
                    return digit(other) || (other >= 'A' && other <= 'F') || (other >= 'a' && other <= 'f');
                });
            case 'n': {
                const Node lf = One([](char other) { return other == '\n'; });
                const Node cr = One([](char other) { return other == '\r'; });
                return Either(cr, Sequence(Either(cr, Nothing()), lf));
            }
            case 'q':
                return Either(quoted('"'), quoted('\''));
            case 't':
                return Exactly('\t');
            case 'v':
                return Exactly('\v');
            case 'f':
                return Exactly('\f');
            case 'r':
                return Exactly('\r');
            case '0':
                return Exactly('\0');
            case 'x':
                return Coded(2);
            case 'u':
                return Coded(4);
            case 's':
                return One(space);
            case 'D':
                return One([=](char other) { return !digit(other); });
            case 'S':
                return One([=](char other) { return !space(other); });
            case 'W':
                return One([=](char other) { return !digit(other) && !letter(other) && other != '_'; });
            case 'w':
                return oneOrMore(One(letter));
            case 'z':
                return oneOrMore(One(digit));
            default:
                m_valid = m_valid && !digit(c);
                return One([c](char other) { return other == c; });
        }
    }

    std::string m_text;
    std::size_t m_at = 0;
    bool m_valid = true;
    Node m_root;
};

}  // namespace brindle::testing
