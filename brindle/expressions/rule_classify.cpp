// Texts become typed values. Entry points: Classify and ClassifyOperand. Tests: rule_classify_test.cpp.
#include "brindle/expressions/rule_classify.h"

#include <algorithm>
#include <array>

#include "brindle/address/address_ov.h"
#include "brindle/framework/letter_case.h"
#include "brindle/framework/number_text.h"

namespace brindle {
namespace {

using Literal = CCalculator::Literal;

constexpr std::size_t kAddressLength = 10;       // "0001:02:03"
constexpr std::size_t kShortestDateLength = 11;  // "1-1-1T1:1:1"

constexpr std::size_t kShortNumber = 9;  // digits of a number that is never too large

// Reads the digits a text begins with, kShortNumber at most, and returns how many there are.
std::size_t ReadDigits(std::string_view text, std::int32_t& number) noexcept {
    const std::size_t limit = std::min(text.size(), kShortNumber);
    std::size_t count = 0;
    number = 0;
    for (; count < limit && IsDigit(text[count]); ++count) number = number * 10 + (text[count] - '0');
    return count;
}

// Steps over one part of a scanf-like pattern; each returns false when the text does not go on like that.
class DateScanner {
  public:
    explicit DateScanner(std::string_view text) noexcept : m_rest(text) {}

    bool Number(int& value) noexcept {
        SkipSpace();
        std::int32_t number = 0;
        const std::size_t digits = ReadDigits(m_rest, number);
        if (digits == 0 && !BeginsWithSign()) return false;  // most texts are no dates
        if (digits == 0 || digits == kShortNumber) return ScanInt(m_rest, value);
        m_rest.remove_prefix(digits);
        value = number;
        return true;
    }
    bool Character(char expected) noexcept {
        if (m_rest.empty() || m_rest.front() != expected) return false;
        m_rest.remove_prefix(1);
        return true;
    }
    // White space, then one to three other characters.
    bool ShortWord(std::string_view& word) noexcept {
        SkipSpace();
        std::size_t length = 0;
        while (length < 3 && length < m_rest.size() && IsWordCharacter(m_rest[length])) ++length;
        word = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return length > 0;
    }

  private:
    void SkipSpace() noexcept {
        while (!m_rest.empty() && IsSpace(m_rest.front())) m_rest.remove_prefix(1);
    }
    bool BeginsWithSign() const noexcept {
        return !m_rest.empty() && (m_rest.front() == '-' || m_rest.front() == '+');
    }
    // A zero byte ends the text for a scan.
    static bool IsWordCharacter(char c) noexcept { return c != '\0' && !IsSpace(c); }

    std::string_view m_rest;
};

struct DateParts {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

// 1 to 12; 0 for a name of no month, which no date has.
int MonthNumber(std::string_view name) noexcept {
    static constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto found = std::find_if(kMonths.begin(), kMonths.end(),
                                    [name](std::string_view month) { return EqualNoCase(month, name); });
    return found == kMonths.end() ? 0 : static_cast<int>(found - kMonths.begin()) + 1;
}

// "2023-01-02T10:00:00"
bool ScanNumericDate(std::string_view text, DateParts& parts) noexcept {
    DateScanner scan(text);
    return scan.Number(parts.year) && scan.Character('-') && scan.Number(parts.month) &&
           scan.Character('-') && scan.Number(parts.day) && scan.Character('T') && scan.Number(parts.hour) &&
           scan.Character(':') && scan.Number(parts.minute) && scan.Character(':') &&
           scan.Number(parts.second);
}

// "Mon Jan 02 10:00:00 2023"; the name of the day is not looked at.
bool ScanNamedDate(std::string_view text, DateParts& parts) noexcept {
    DateScanner scan(text);
    std::string_view weekday;
    std::string_view month;
    const bool complete = scan.ShortWord(weekday) && scan.ShortWord(month) && scan.Number(parts.day) &&
                          scan.Number(parts.hour) && scan.Character(':') && scan.Number(parts.minute) &&
                          scan.Character(':') && scan.Number(parts.second) && scan.Number(parts.year);
    if (complete) parts.month = MonthNumber(month);
    return complete;
}

// Kept: positions are not looked at, so "5-", "-" and "." are numeric.
bool ScanNumeric(std::string_view text, int& points) noexcept {
    int signs = 0;
    for (const char c : text) {
        if (IsDigit(c)) continue;
        if (c == '.') {
            ++points;
        } else if (c == '-') {
            ++signs;
        } else {
            return false;
        }
        if (points > 1 || signs > 1) return false;
    }
    return true;
}

bool TakeDelimiters(std::string_view& text, char delimiter) noexcept {
    if (text.size() < 2 || text.front() != delimiter || text.back() != delimiter) return false;
    text = text.substr(1, text.size() - 2);
    return true;
}

}  // namespace

bool IsDigits(std::string_view text) noexcept {
    return std::all_of(text.begin(), text.end(), IsDigit);
}

bool IsNumeric(std::string_view text) noexcept {
    int points = 0;
    return ScanNumeric(text, points);
}

bool IsOVAddress(std::string_view text) noexcept {
    if (text.size() != kAddressLength) return false;
    std::array<char, kAddressLength + 1> terminated{};
    std::copy(text.begin(), text.end(), terminated.begin());
    return CAddressOv(0u, 0u, 0u).SetAddress(terminated.data()) != 0;
}

bool IsDateTime(std::string_view text, COleDateTime& date) noexcept {
    if (text.size() < kShortestDateLength) return false;  // as most values are, and scanning takes longer
    DateParts parts;
    if (!ScanNumericDate(text, parts) && !ScanNamedDate(text, parts)) return false;
    date.SetDateTime(parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second);
    return true;
}

std::string_view Trim(std::string_view text) noexcept {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

RuleValue Classify(std::string_view text) {
    if (text.empty()) return EmptyValue();
    // Most values are short integers; the result is what ReadInt gives.
    if (std::int32_t value = 0; ReadDigits(text, value) == text.size()) return RuleValue::OfInt(value);
    int points = 0;
    if (ScanNumeric(text, points))
        return points > 0 ? RuleValue::OfDouble(ReadDouble(text)) : RuleValue::OfInt(ReadInt(text));
    // Kept: only these four spellings are truth values; "True" is a text.
    if (text == "true" || text == "TRUE") return RuleValue::OfBool(true);
    if (text == "false" || text == "FALSE") return RuleValue::OfBool(false);
    if (IsOVAddress(text)) return RuleValue::OfText(text, Literal::Address);
    COleDateTime date;
    if (IsDateTime(text, date) && date.GetStatus() == COleDateTime::valid) return RuleValue::OfDate(date);
    return RuleValue::OfText(text);
}

RuleValue ClassifyOperand(std::string_view operand) {
    operand = Trim(operand);
    const bool quoted = TakeDelimiters(operand, '"');
    TakeDelimiters(operand, '#');
    RuleValue value = Classify(operand);
    value.replaceable = !quoted && value.type == Literal::String;
    return value;
}

}  // namespace brindle
