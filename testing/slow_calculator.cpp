// The language of rules, slowly. See slow_calculator.h.
#include "testing/slow_calculator.h"

#include <cmath>
#include <map>

#include "brindle/address/address_ov.h"
#include "brindle/framework/letter_case.h"
#include "brindle/framework/number_text.h"
#include "brindle/framework/string_a.h"
#include "brindle/platform/clock.h"
#include "testing/slow_pattern.h"

namespace brindle::testing {
namespace {

SlowValue MakeBool(bool truth) {
    SlowValue value;
    value.type = SlowValue::kBool;
    value.truth = truth;
    return value;
}

SlowValue MakeInt(std::int64_t integer) {
    SlowValue value;
    value.type = SlowValue::kInt;
    value.integer = static_cast<int>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(integer)));
    return value;
}

SlowValue MakeNumber(double number, SlowValue::Type type = SlowValue::kDouble) {
    SlowValue value;
    value.type = type;
    value.number = number;
    return value;
}

SlowValue MakeText(const std::string& text, SlowValue::Type type = SlowValue::kString) {
    SlowValue value;
    value.type = type;
    value.text = text;
    return value;
}

SlowValue MakeDate(const COleDateTime& date) {
    SlowValue value;
    value.type = SlowValue::kDateTime;
    value.date = date;
    return value;
}

int Truncate(double value) {
    if (std::isnan(value) || std::trunc(value) > 2147483647.0 || std::trunc(value) < -2147483648.0)
        return -2147483647 - 1;
    return static_cast<int>(value);
}

// Parts by way of the address's texts, whatever their size.
std::vector<std::uint32_t> PartsOf(const std::string& text) {
    CAddressOv address;
    address.SetAddress(text.c_str());
    std::vector<std::uint32_t> parts;
    for (const CStringA& part : {address.GetNetString(), address.GetUnitString(), address.GetPortString()})
        parts.push_back(ReadUnsignedLong(part.view(), 16).value);
    return parts;
}

std::uint32_t PackedOf(const std::string& text) {
    const auto parts = PartsOf(text);
    return parts[0] * 65536 + parts[1] * 256 + parts[2];
}

bool SlowIsNumeric(const std::string& text) {
    int points = 0;
    int signs = 0;
    for (const char c : text) {
        if (c == '.') {
            ++points;
        } else if (c == '-') {
            ++signs;
        } else if (c < '0' || c > '9') {
            return false;
        }
    }
    return points <= 1 && signs <= 1;
}

void SkipSpaces(const std::string& text, std::size_t& at) {
    while (at < text.size() && std::string(" \t\n\v\f\r").find(text[at]) != std::string::npos) ++at;
}

// Follows a pattern in the manner of scanf: 'd' an integer, 's' up to three characters, ' ' any space, else itself.
bool Scan(const std::string& text, const std::string& pattern, std::vector<int>& numbers,
          std::vector<std::string>& words) {
    std::size_t at = 0;
    for (const char step : pattern) {
        if (step == ' ') {
            SkipSpaces(text, at);
        } else if (step == 'd') {
            std::string_view rest = std::string_view(text).substr(at);
            std::int32_t number = 0;
            if (!ScanInt(rest, number)) return false;
            at = text.size() - rest.size();
            numbers.push_back(number);
        } else if (step == 's') {
            SkipSpaces(text, at);
            std::string word;
            while (word.size() < 3 && at < text.size()) {
                std::size_t behind = at;
                SkipSpaces(text, behind);
                if (behind != at) break;
                word += text[at++];
            }
            if (word.empty()) return false;
            words.push_back(word);
        } else {
            if (at >= text.size() || text[at] != step) return false;
            ++at;
        }
    }
    return true;
}

bool SlowIsDateTime(const std::string& text, COleDateTime& date) {
    const std::string terminated(text.c_str());
    std::vector<int> n;
    std::vector<std::string> words;
    if (Scan(terminated, "d-d-dTd:d:d", n, words)) {
        date.SetDateTime(n[0], n[1], n[2], n[3], n[4], n[5]);
        return true;
    }
    n.clear();
    words.clear();
    if (!Scan(terminated, "s s d d:d:d d", n, words)) return false;
    const std::string months = "jan feb mar apr may jun jul aug sep oct nov dec";
    std::string name;
    for (const char c : words[1]) name += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    const std::size_t found = name.size() == 3 ? months.find(name) : std::string::npos;
    const int month = found == std::string::npos || found % 4 != 0 ? 0 : static_cast<int>(found / 4) + 1;
    date.SetDateTime(n[4], month, n[0], n[1], n[2], n[3]);
    return true;
}

std::string TrimBlanks(std::string text) {
    while (!text.empty() && text.back() == ' ') text.pop_back();
    while (!text.empty() && text.front() == ' ') text.erase(0, 1);
    return text;
}

bool StripPair(std::string& text, char delimiter) {
    if (text.size() < 2 || text.front() != delimiter || text.back() != delimiter) return false;
    text = text.substr(1, text.size() - 2);
    return true;
}

int PriorityOf(const std::string& op) {
    if (op == "&" || op == "|" || op == "(") return 0;
    if (op == "*" || op == "/" || op == "^") return 2;
    return 1;
}

bool IsOperatorCharacter(char c) {
    return c != '\0' && std::string("&|!+-*/^=<>").find(c) != std::string::npos;
}

SlowToken OperatorToken(const std::string& op) {
    SlowToken token;
    token.kind = SlowToken::kOperator;
    token.text = op;
    return token;
}

bool SlowIsFunction(const std::string& buffer) {
    return TrimBlanks(buffer) == "DATE" || TrimBlanks(buffer) == "TIMESPAN";
}

SlowValue CallSlowly(const std::string& call) {
    if (call.substr(0, 4) == "DATE") {
        LocalTime now;
        COleDateTime date;
        CurrentClock().ToLocalTime(UnixSeconds(), now);
        date.SetDateTime(now.year, now.month, now.day, now.hour, now.minute, now.second);
        return MakeDate(date);
    }
    if (call.substr(0, 8) != "TIMESPAN" || call.find('(') == std::string::npos) return SlowValue();
    std::vector<std::string> arguments = {""};
    for (const char c : call.substr(call.find('(') + 1)) {
        if (c == ',') {
            arguments.emplace_back();
        } else {
            arguments.back() += c;
        }
    }
    if (arguments.size() != 4) return SlowValue();
    const double days = ReadInt(arguments[0]) + ReadInt(arguments[1]) / 24.0 +
                        ReadInt(arguments[2]) / 1440.0 + ReadInt(arguments[3]) / 86400.0;
    return MakeNumber(std::round(days * 86400.0), SlowValue::kTimeSpan);
}

// Rows: left type; columns: right type; both in the order Bool Double String Int DateTime Address TimeSpan.
SlowValue::Type Promote(SlowValue::Type left, SlowValue::Type right) {
    static const char* const rows[] = {"BDSISII", "DDSDSDD", "SSSSSSS", "IDSISII",
                                       "SSSSTST", "SDSISAD", "SDSSSSD"};
    static const auto& types = *new std::map<char, SlowValue::Type>{
        {'B', SlowValue::kBool}, {'D', SlowValue::kDouble},   {'S', SlowValue::kString},
        {'I', SlowValue::kInt},  {'T', SlowValue::kDateTime}, {'A', SlowValue::kAddress}};
    return types.at(rows[left][right]);
}

SlowValue Arithmetic(const SlowValue& a, const SlowValue& b, char op) {
    const int sign = op == '-' ? -1 : 1;
    switch (Promote(a.type, b.type)) {
        case SlowValue::kDouble: {
            const double x = a.AsDouble();
            const double y = b.AsDouble();
            if (op == '+') return MakeNumber(x + y);
            if (op == '-') return MakeNumber(x - y);
            if (op == '*') return MakeNumber(x * y);
            if (op == '/' && y != 0.0) return MakeNumber(x / y);
            return SlowValue();
        }
        case SlowValue::kInt: {
            const std::int64_t x = a.AsInt();
            const std::int64_t y = b.AsInt();
            if (op == '+') return MakeInt(x + y);
            if (op == '-') return MakeInt(x - y);
            if (op == '*') return MakeInt(x * y);
            if (op == '/' && y != 0) return MakeInt(x / y);
            return SlowValue();
        }
        case SlowValue::kString:
            return op == '+' ? MakeText(a.AsString() + b.AsString()) : SlowValue();
        case SlowValue::kDateTime: {
            if ((op != '+' && op != '-') || b.type != SlowValue::kTimeSpan) return SlowValue();
            const double all = std::trunc(b.number);
            const double days = std::trunc(all / 86400);
            const double hours = std::trunc(std::fmod(all, 86400) / 3600);
            const double minutes = std::trunc(std::fmod(all, 3600) / 60);
            const double span = days + hours / 24 + minutes / 1440 + std::fmod(all, 60) / 86400;
            const double old = a.date.m_dt;
            const double line = (old < 0 ? 2 * std::ceil(old) - old : old) + sign * span;
            COleDateTime moved;
            moved.m_dt = line < 0 ? 2 * std::floor(line) - line : line;
            return MakeDate(moved);
        }
        case SlowValue::kAddress: {
            if (op != '+' && op != '-') return SlowValue();
            const auto x = PartsOf(a.text);
            const auto y = PartsOf(b.text);
            CStringA text;
            const auto s = static_cast<std::uint32_t>(sign);
            text.Format("%04X:%02X:%02X", x[0] + s * y[0], x[1] + s * y[1], x[2] + s * y[2]);
            return MakeText(text.str(), SlowValue::kAddress);
        }
        default:
            return SlowValue();
    }
}

SlowValue IsLess(const SlowValue& a, const SlowValue& b, SlowValue::Type type) {
    switch (type) {
        case SlowValue::kDouble:
            return MakeBool(a.AsDouble() < b.AsDouble());
        case SlowValue::kString:
            return MakeBool(a.AsString().compare(b.AsString()) < 0);
        case SlowValue::kDateTime:
            return MakeBool(a.date < b.date);
        case SlowValue::kAddress:
            return MakeBool(PackedOf(a.text) < PackedOf(b.text));
        default:
            return MakeBool(a.AsInt() < b.AsInt());
    }
}

SlowValue Equality(const SlowValue& a, const SlowValue& b) {
    switch (Promote(a.type, b.type)) {
        case SlowValue::kBool:
            return MakeBool(a.truth == b.truth);
        case SlowValue::kDouble:
            return MakeBool(std::fabs(a.AsDouble() - b.AsDouble()) < 0.00001);
        case SlowValue::kInt:
            return MakeBool(a.AsInt() == b.AsInt());
        case SlowValue::kDateTime:
            return MakeBool(a.date == b.date);
        case SlowValue::kAddress:
            return MakeBool(a.AsString() == b.AsString());
        default:
            break;
    }
    const SlowPattern pattern(b.AsString());
    return pattern.IsValid() ? MakeBool(pattern.Matches(a.AsString())) : SlowValue();
}

}  // namespace

int SlowValue::AsInt() const {
    switch (type) {
        case kBool:
            return truth ? 1 : 0;
        case kString:
            return Truncate(ReadDouble(text));
        case kInt:
            return integer;
        case kDateTime:
            return Truncate(date.m_dt);
        case kAddress:
            return static_cast<int>(PackedOf(text));
        default:
            return Truncate(number);
    }
}

double SlowValue::AsDouble() const {
    switch (type) {
        case kDouble:
        case kTimeSpan:
            return number;
        case kString:
            return ReadDouble(text);
        case kDateTime:
            return date.m_dt;
        default:
            return AsInt();
    }
}

bool SlowValue::AsBool() const {
    if (type == kString) return text != "0" && text != "0.0" && !EqualNoCase(text, "false");
    return AsInt() != 0;
}

std::string SlowValue::AsString() const {
    CStringA out;
    switch (type) {
        case kBool:
            return truth ? "TRUE" : "FALSE";
        case kInt:
            return PrintInt(integer);
        case kDateTime:
            out.Format("%.4d-%.2d-%.2dT%.2d:%.2d:%.2d", date.GetYear(), date.GetMonth(), date.GetDay(),
                       date.GetHour(), date.GetMinute(), date.GetSecond());
            return out.str();
        case kDouble:
        case kTimeSpan:
            out.Format("%g", number);
            return out.str();
        default:
            return text;
    }
}

SlowValue SlowFromString(const std::string& text) {
    if (text.empty()) return SlowValue();
    if (SlowIsNumeric(text)) {
        if (text.find('.') != std::string::npos) return MakeNumber(ReadDouble(text));
        return MakeInt(ReadInt(text));
    }
    if (text == "true" || text == "TRUE") return MakeBool(true);
    if (text == "false" || text == "FALSE") return MakeBool(false);
    CAddressOv address;
    if (text.size() == 10 && address.SetAddress(text.c_str())) return MakeText(text, SlowValue::kAddress);
    COleDateTime date;
    if (SlowIsDateTime(text, date) && date.GetStatus() == COleDateTime::valid) return MakeDate(date);
    return MakeText(text);
}

std::optional<SlowValue> SlowCreate(std::string text) {
    text = TrimBlanks(text);
    if (text.empty()) return std::nullopt;
    const bool quoted = StripPair(text, '"');
    StripPair(text, '#');
    SlowValue value = SlowFromString(text);
    value.replaceable = !quoted && value.type == SlowValue::kString;
    return value;
}

namespace {

bool IsSkipped(char c) {
    return static_cast<signed char>(c) < 32;
}

class SlowConversion {
  public:
    SlowConversion(const std::string& text, SlowExpression& out) : m_text(text), m_out(out) {}

    bool Run() {
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if (IsSkipped(c)) {
                ++m_at;
            } else if (m_inQuotes) {
                Operand();
            } else if (IsOperatorCharacter(c)) {
                ReadOperator(c);
            } else if (c == '(') {
                Push("(");
                ++m_opened;
                ++m_at;
            } else if (c == ')') {
                if (!Close()) return false;
            } else {
                Operand();
            }
        }
        while (!m_stack.empty()) {
            if (m_stack.back() == "(") return false;
            PopToOutput();
        }
        return m_opened == m_closed && m_emitted > 0;
    }

  private:
    void Push(const std::string& op) {
        if (!(m_stack.size() > 100)) m_stack.push_back(op);
    }
    void PopToOutput() {
        m_out.push_back(OperatorToken(m_stack.back()));
        m_stack.pop_back();
    }
    void ReadOperator(char c) {
        std::string op(1, c);
        ++m_at;
        if ((c == '!' || c == '<' || c == '>') && m_at < m_text.size() && m_text[m_at] == '=') {
            op += '=';
            ++m_at;
        }
        while (!m_stack.empty() && m_stack.back() != "(" && op != "^" &&
               PriorityOf(m_stack.back()) >= PriorityOf(op)) {
            PopToOutput();
            ++m_emitted;
        }
        Push(op);
    }
    bool Close() {
        if (m_stack.empty()) return false;
        ++m_closed;
        bool popped = false;
        while (m_stack.back() != "(") {
            PopToOutput();
            popped = true;
            if (m_stack.empty()) return false;
        }
        m_stack.pop_back();
        if (popped) ++m_emitted;
        ++m_at;
        return true;
    }
    void Operand() {
        std::string buffer;
        bool isFunction = false;
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if (IsSkipped(c)) {
                ++m_at;
                continue;
            }
            if (!m_inQuotes && SlowIsFunction(buffer)) isFunction = true;
            if (!m_inQuotes && !isFunction && (c == '(' || c == ')' || IsOperatorCharacter(c))) break;
            if (c == '"' && !(m_at > 0 && m_text[m_at - 1] == '\\')) m_inQuotes = !m_inQuotes;
            buffer += c;
            ++m_at;
            if (isFunction && c == ')') break;
        }
        Emit(buffer, isFunction);
    }
    void Emit(const std::string& buffer, bool isFunction) {
        SlowToken token;
        if (isFunction) {
            token.kind = SlowToken::kFunction;
            token.text = buffer.substr(buffer.find_first_not_of(' '));
        } else {
            const std::optional<SlowValue> literal = SlowCreate(buffer);
            if (!literal) return;
            token.kind = SlowToken::kLiteral;
            token.value = *literal;
        }
        m_out.push_back(token);
        ++m_emitted;
    }

    const std::string& m_text;
    SlowExpression& m_out;
    std::vector<std::string> m_stack;
    bool m_inQuotes = false;
    int m_opened = 0;
    int m_closed = 0;
    int m_emitted = 0;
    std::size_t m_at = 0;
};

}  // namespace

bool SlowConvert(const std::string& text, SlowExpression& out) {
    return !text.empty() && SlowConversion(text, out).Run();
}

std::string SlowText(const SlowExpression& expression) {
    std::string text;
    for (std::size_t i = 0; i < expression.size(); ++i) {
        if (i > 0) text += " ";
        text +=
            expression[i].kind == SlowToken::kLiteral ? expression[i].value.AsString() : expression[i].text;
    }
    return text;
}

SlowValue SlowNegate(const SlowValue& value) {
    switch (value.type) {
        case SlowValue::kBool:
            return MakeBool(!value.truth);
        case SlowValue::kInt:
            return MakeBool(value.integer == 0);
        case SlowValue::kDouble:
        case SlowValue::kTimeSpan:
            return MakeBool(value.number == 0.0);
        default:
            return SlowValue();
    }
}

SlowValue SlowCompute(const SlowValue& left, const SlowValue& right, const std::string& op) {
    const SlowValue::Type type = Promote(left.type, right.type);
    if (op == "&") return MakeBool(left.AsInt() != 0 && right.AsInt() != 0);
    if (op == "|") return MakeBool(left.AsInt() != 0 || right.AsInt() != 0);
    if (op == "=") return Equality(left, right);
    if (op == "!=") return SlowNegate(Equality(left, right));
    if (op == "<") return IsLess(left, right, type);
    if (op == ">") return IsLess(right, left, type);
    if (op == "<=") return SlowCompute(SlowCompute(left, right, "<"), Equality(left, right), "|");
    if (op == ">=") return SlowCompute(SlowCompute(left, right, ">"), Equality(left, right), "|");
    return Arithmetic(left, right, op[0]);
}

bool SlowRun(const SlowExpression& expression, SlowValue& result) {
    if (expression.empty()) return false;
    std::vector<SlowValue> stack;
    const auto push = [&stack](const SlowValue& value) {
        if (!(stack.size() > 100)) stack.push_back(value);
    };
    const auto pop = [&stack] {
        SlowValue value = stack.back();
        stack.pop_back();
        return value;
    };
    for (const SlowToken& token : expression) {
        if (token.kind == SlowToken::kFunction) {
            push(CallSlowly(token.text));
        } else if (token.kind == SlowToken::kLiteral) {
            push(token.value);
        } else {
            if (stack.empty()) return false;
            const SlowValue right = pop();
            if (token.text == "!") {
                push(SlowNegate(right));
                continue;
            }
            if (stack.empty()) return false;
            const SlowValue left = pop();
            push(SlowCompute(left, right, token.text));
        }
    }
    if (stack.empty()) return false;
    result = stack.back();
    return true;
}

bool SlowSolve(std::string rule, const SlowLookup& lookup, bool upper, SlowValue& result) {
    const auto toUpper = [upper](std::string text) {
        if (upper)
            for (char& c : text) c = ToUpper(c);
        return text;
    };
    SlowExpression expression;
    if (!SlowConvert(toUpper(std::move(rule)), expression)) return false;
    for (SlowToken& token : expression) {
        if (token.kind != SlowToken::kLiteral) continue;
        if (token.value.type != SlowValue::kString || !token.value.replaceable) continue;
        if (const auto value = lookup(token.value.text)) token.value = SlowFromString(toUpper(*value));
        token.value.replaceable = false;
    }
    return SlowRun(expression, result);
}

}  // namespace brindle::testing
