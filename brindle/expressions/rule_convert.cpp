// The conversion of a rule. Operators wait on a stack until one of lower priority comes; operands go out at
// once. An operand is everything between operators and parentheses, so its blanks are part of it until it is
// classified. Entry point: ConvertRule. Tests: rule_convert_test.cpp.
#include "brindle/expressions/rule_convert.h"

#include <array>
#include <utility>

#include "brindle/expressions/rule_classify.h"

namespace brindle {
namespace {

using Operator = CCalculator::Operator;

// Kept: control characters, tabs and line breaks are skipped wherever they stand, and so is every byte from
// 0x80 on, as its value is negative.
constexpr bool IsSkipped(char c) noexcept {
    return static_cast<signed char>(c) < 32;
}

consteval std::array<std::uint8_t, 256> MakeOperatorTable() noexcept {
    std::array<std::uint8_t, 256> table{};
    table['&'] = Operator::And;
    table['|'] = Operator::Or;
    table['!'] = Operator::Not;
    table['+'] = Operator::Plus;
    table['-'] = Operator::Minus;
    table['*'] = Operator::Multiply;
    table['/'] = Operator::Divide;
    table['^'] = Operator::Power;
    table['='] = Operator::Equal;
    table['<'] = Operator::Less;
    table['>'] = Operator::Greater;
    return table;
}
constexpr std::array<std::uint8_t, 256> kOperatorTable = MakeOperatorTable();

// Characters that mean nothing inside an operand: no operator, parenthesis or quote, and not skipped.
consteval std::array<bool, 256> MakePlainTable() noexcept {
    std::array<bool, 256> table{};
    for (unsigned byte = 32; byte < 128; ++byte)
        table[byte] = kOperatorTable[byte] == 0 && byte != '(' && byte != ')' && byte != '"';
    return table;
}
constexpr std::array<bool, 256> kPlain = MakePlainTable();

constexpr bool IsPlain(char c) noexcept {
    return kPlain[static_cast<unsigned char>(c)];
}

constexpr OperatorType WithEqualSign(OperatorType op) noexcept {
    switch (op) {
        case Operator::Not:
            return Operator::NotEqual;
        case Operator::Less:
            return Operator::LessEqual;
        case Operator::Greater:
            return Operator::GreaterEqual;
        default:
            return Operator::None;
    }
}

bool IsFunctionName(std::string_view text) noexcept {
    return text == "DATE" || text == "TIMESPAN";
}

struct WaitingOperator {
    OperatorType op;
    std::size_t position;
};

class OperatorStack {
  public:
    bool IsEmpty() const noexcept { return m_count == 0; }
    const WaitingOperator& Top() const noexcept { return m_waiting[m_count - 1]; }
    void Pop() noexcept { --m_count; }
    // False, and nothing done, when there is no room.
    bool Push(OperatorType op, std::size_t position) noexcept {
        if (m_count > kStackCapacity) return false;
        m_waiting[m_count++] = {op, position};
        return true;
    }

  private:
    std::array<WaitingOperator, kStackCapacity + 1> m_waiting;
    std::size_t m_count = 0;
};

// The characters of one operand: a view of the rule while nothing between them is skipped, else a copy.
class OperandText {
  public:
    OperandText(std::string_view rule, std::size_t begin) noexcept : m_rule(rule), m_begin(begin) {}

    void Add(std::size_t at) {
        const char c = m_rule[at];
        if (m_copied) {
            m_copy += c;
        } else {
            m_end = at + 1;
        }
        if (m_significant > 0 || c != ' ') {
            if (m_significant++ == 0) m_first = m_copied ? m_copy.size() - 1 : at;
        }
    }
    // A character that is not part of the operand stands here.
    void Skip() {
        if (m_copied) return;
        m_copied = true;
        m_copy = m_rule.substr(m_begin, Length());
        m_first -= m_significant > 0 ? m_begin : 0;
    }
    // Whether what was read so far, blanks around it not counted, is a function's name. The question is asked
    // before each character, so blanks behind the name have not been read yet.
    bool IsFunction() const noexcept {
        return (m_significant == 4 || m_significant == 8) &&
               IsFunctionName((m_copied ? std::string_view(m_copy) : m_rule).substr(m_first, m_significant));
    }
    std::string_view Take(RuleProgram& program) {
        return m_copied ? program.Keep(std::move(m_copy)) : m_rule.substr(m_begin, Length());
    }

  private:
    std::size_t Length() const noexcept { return m_end > m_begin ? m_end - m_begin : 0; }

    std::string_view m_rule;
    std::size_t m_begin;
    std::size_t m_end = 0;
    std::size_t m_first = 0;        // the first character that is no blank; in the rule, or in the copy
    std::size_t m_significant = 0;  // characters from there on
    bool m_copied = false;
    std::string m_copy;
};

class Conversion {
  public:
    Conversion(std::string_view text, RuleProgram& program) noexcept : m_text(text), m_program(program) {}

    RuleFault Run();

  private:
    void OpenParenthesis();
    void ReadOperator(OperatorType op);
    bool CloseParenthesis();
    void ReadOperand();
    bool ReadSimpleOperand();
    bool ReadsOn(OperandText& operand, bool& isFunction);
    void EmitOperand(std::string_view text, std::size_t position, bool isFunction);
    void EmitTop();
    RuleFault Finish();
    RuleFault Unmatched(const char* why, std::size_t position) const noexcept {
        return m_isTooDeep ? RuleFault{"nested too deeply", m_tooDeep} : RuleFault{why, position};
    }

    std::string_view m_text;
    RuleProgram& m_program;
    OperatorStack m_stack;
    std::size_t m_at = 0;
    bool m_insideQuotes = false;
    std::size_t m_opened = 0;
    std::size_t m_closed = 0;
    bool m_isTooDeep = false;   // a "(" found no room on the stack
    std::size_t m_tooDeep = 0;  // position of the first such
    std::size_t m_emitted = 0;  // Kept: operators that go out at the end are not counted
};

RuleFault Conversion::Run() {
    if (m_text.empty()) return {"the rule is empty", 0};
    while (m_at < m_text.size()) {
        const char c = m_text[m_at];
        if (IsSkipped(c)) {
            ++m_at;
        } else if (m_insideQuotes) {
            ReadOperand();
        } else if (const OperatorType op = IsOperator(c); op != Operator::None) {
            ReadOperator(op);
        } else if (c == '(') {
            OpenParenthesis();
        } else if (c == ')') {
            if (!CloseParenthesis()) return Unmatched("\")\" without \"(\"", m_at);
            ++m_at;
        } else {
            ReadOperand();
        }
    }
    return Finish();
}

void Conversion::OpenParenthesis() {
    if (!m_stack.Push(Operator::LeftParen, m_at) && !m_isTooDeep) {
        m_isTooDeep = true;
        m_tooDeep = m_at;
    }
    ++m_opened;
    ++m_at;
}

void Conversion::ReadOperator(OperatorType op) {
    const std::size_t position = m_at++;
    const bool equalSign = m_at < m_text.size() && m_text[m_at] == '=';
    if (equalSign && WithEqualSign(op) != Operator::None) {
        op = WithEqualSign(op);
        ++m_at;
    }
    // Kept: "^" takes nothing off the stack, not even operators of its own level.
    while (IsLeftAssociative(op) && !m_stack.IsEmpty() && m_stack.Top().op != Operator::LeftParen &&
           Priority(m_stack.Top().op) >= Priority(op)) {
        EmitTop();
        ++m_emitted;
    }
    m_stack.Push(op, position);
}

bool Conversion::CloseParenthesis() {
    if (m_stack.IsEmpty()) return false;
    ++m_closed;
    if (m_stack.Top().op != Operator::LeftParen) ++m_emitted;  // Kept: counts once, however many go out
    while (m_stack.Top().op != Operator::LeftParen) {
        EmitTop();
        if (m_stack.IsEmpty()) return false;
    }
    m_stack.Pop();
    return true;
}

// Reads an operand that is one piece of the rule and no function call, as nearly all are. False, and nothing read, for
// any other.
bool Conversion::ReadSimpleOperand() {
    const std::size_t size = m_text.size();
    std::size_t at = m_at;
    while (at < size && m_text[at] == ' ') ++at;
    const std::string_view rest = m_text.substr(at);
    if (rest.starts_with("DATE") || rest.starts_with("TIMESPAN")) return false;
    bool insideQuotes = m_insideQuotes;
    for (; at < size; ++at) {
        const char c = m_text[at];
        if (IsPlain(c)) continue;
        if (IsSkipped(c)) return false;
        if (c == '"') {
            if (at == 0 || m_text[at - 1] != '\\') insideQuotes = !insideQuotes;
        } else if (!insideQuotes) {
            break;
        }
    }
    m_insideQuotes = insideQuotes;
    const std::size_t position = std::exchange(m_at, at);
    EmitOperand(m_text.substr(position, at - position), position, false);
    return true;
}

void Conversion::ReadOperand() {
    if (ReadSimpleOperand()) return;
    const std::size_t position = m_at;
    OperandText operand(m_text, position);
    bool isFunction = false;
    while (m_at < m_text.size()) {
        if (IsSkipped(m_text[m_at])) {
            operand.Skip();
            ++m_at;
        } else if (!ReadsOn(operand, isFunction)) {
            break;
        }
    }
    EmitOperand(operand.Take(m_program), position, isFunction);
}

// Takes the character here into the operand; false when the operand ends before it, or with it.
bool Conversion::ReadsOn(OperandText& operand, bool& isFunction) {
    const char c = m_text[m_at];
    if (!m_insideQuotes) {
        // Kept: the name alone makes the call, so "DATES" is one too, and without ")" it takes the rest of the
        // rule.
        isFunction = isFunction || operand.IsFunction();
        if (!isFunction && (c == '(' || c == ')' || IsOperator(c) != Operator::None)) return false;
    }
    // Kept: a quote counts inside a call too, although the call ends at the next ")" all the same: behind one with an
    // odd number of quotes the rule goes on inside quotes.
    const bool escaped = m_at > 0 && m_text[m_at - 1] == '\\';
    if (c == '"' && !escaped) m_insideQuotes = !m_insideQuotes;
    operand.Add(m_at++);
    return !(isFunction && c == ')');
}

void Conversion::EmitOperand(std::string_view text, std::size_t position, bool isFunction) {
    const std::size_t blanks = text.find_first_not_of(' ');
    if (blanks == std::string_view::npos) return;
    if (isFunction) {
        m_program.AddFunction(text.substr(blanks), position + blanks);
    } else {
        m_program.AddOperand(position + blanks, [text] { return ClassifyOperand(text); });
    }
    ++m_emitted;
}

void Conversion::EmitTop() {
    m_program.AddOperator(m_stack.Top().op, m_stack.Top().position);
    m_stack.Pop();
}

RuleFault Conversion::Finish() {
    for (; !m_stack.IsEmpty(); EmitTop())
        if (m_stack.Top().op == Operator::LeftParen)
            return Unmatched("\"(\" without \")\"", m_stack.Top().position);
    if (m_opened != m_closed) return Unmatched("\"(\" without \")\"", 0);
    if (m_emitted == 0) return {"the rule has no operand", 0};
    return {};
}

}  // namespace

OperatorType IsOperator(char character) noexcept {
    return static_cast<OperatorType>(kOperatorTable[static_cast<unsigned char>(character)]);
}

RuleFault ConvertRule(std::string_view text, RuleProgram& program) {
    return Conversion(text, program).Run();
}

}  // namespace brindle
