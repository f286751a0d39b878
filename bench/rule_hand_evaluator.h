// The bare limit of the rule benchmarks: an evaluator written by hand for just what they use, numbers, texts and one
// trailing "%", in one pass, without an allocation, an error or a type beyond that.
#pragma once

#include <charconv>
#include <cstddef>
#include <string_view>

namespace brindle::bench {

struct HandValue {
    bool isText = false;
    double number = 0;
    std::string_view text;
};

template <class Lookup>
class HandEvaluator {
  public:
    HandEvaluator(std::string_view rule, Lookup lookup) : m_rule(rule), m_lookup(lookup) {}

    double Run() {
        while (m_at < m_rule.size()) {
            const char c = m_rule[m_at];
            if (c == ' ') {
                ++m_at;
            } else if (c == '(') {
                m_operators[m_waiting++] = c;
                ++m_at;
            } else if (c == ')') {
                while (m_operators[m_waiting - 1] != '(') Apply();
                --m_waiting;
                ++m_at;
            } else if (IsOperator(c)) {
                Operator(c);
            } else {
                Operand();
            }
        }
        while (m_waiting > 0) Apply();
        return m_values[m_top - 1].number;
    }

  private:
    static bool IsOperator(char c) {
        return std::string_view("&|!+-*/=<>").find(c) != std::string_view::npos;
    }
    static int Priority(char op) { return op == '&' || op == '|' ? 0 : op == '*' || op == '/' ? 2 : 1; }

    void Operator(char op) {
        ++m_at;
        if ((op == '<' || op == '>') && m_at < m_rule.size() && m_rule[m_at] == '=') {
            op = op == '<' ? 'l' : 'g';
            ++m_at;
        }
        while (m_waiting > 0 && m_operators[m_waiting - 1] != '(' &&
               Priority(m_operators[m_waiting - 1]) >= Priority(op))
            Apply();
        m_operators[m_waiting++] = op;
    }
    void Operand() {
        const std::size_t begin = m_at;
        bool quoted = false;
        while (m_at < m_rule.size()) {
            const char c = m_rule[m_at];
            if (c == '"') quoted = !quoted;
            if (!quoted && (c == '(' || c == ')' || IsOperator(c))) break;
            ++m_at;
        }
        std::string_view text = m_rule.substr(begin, m_at - begin);
        while (text.back() == ' ') text.remove_suffix(1);
        if (text.front() == '"') {
            m_values[m_top++] = {true, 0, text.substr(1, text.size() - 2)};
            return;
        }
        m_values[m_top++] = Classify(text.front() >= '0' && text.front() <= '9' ? text : m_lookup(text));
    }
    static HandValue Classify(std::string_view text) {
        HandValue value{false, 0, text};
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value.number);
        value.isText = error != std::errc() || end != text.data() + text.size();
        return value;
    }
    static bool Matches(std::string_view text, std::string_view pattern) {
        if (!pattern.empty() && pattern.back() == '%')
            return text.starts_with(pattern.substr(0, pattern.size() - 1));
        return text == pattern;
    }
    void Apply() {
        const char op = m_operators[--m_waiting];
        HandValue right = m_values[--m_top];
        if (op == '!') {
            m_values[m_top++] = {false, right.number == 0 ? 1.0 : 0.0, {}};
            return;
        }
        const HandValue left = m_values[--m_top];
        m_values[m_top++] = {false, Computed(left, right, op), {}};
    }
    static double Computed(const HandValue& left, const HandValue& right, char op) {
        switch (op) {
            case '&':
                return left.number != 0 && right.number != 0;
            case '|':
                return left.number != 0 || right.number != 0;
            case '+':
                return left.number + right.number;
            case '-':
                return left.number - right.number;
            case '*':
                return left.number * right.number;
            case '/':
                return left.number / right.number;
            case '<':
                return left.number < right.number;
            case '>':
                return left.number > right.number;
            case 'l':
                return left.number <= right.number;
            case 'g':
                return left.number >= right.number;
            default:
                return left.isText ? Matches(left.text, right.text) : left.number == right.number;
        }
    }

    std::string_view m_rule;
    Lookup m_lookup;
    std::size_t m_at = 0;
    HandValue m_values[101];
    std::size_t m_top = 0;
    char m_operators[101];
    std::size_t m_waiting = 0;
};

}  // namespace brindle::bench
