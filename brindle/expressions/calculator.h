// CCalculator: expressions over typed values, such as `(LEVEL > 10) & STATUS = "OK%"`.
//
// A rule text becomes an Expression, a list of tokens in reverse Polish order (ToReversePolish), which is then
// evaluated to one Literal (Run). Values of different types are promoted by a table; an operation without a
// meaning for its operands does not fail but gives the empty String, which flows on. docs/rules.md describes
// the language. Texts are bytes in the ANSI code page; numbers do not depend on the process locale. Nothing
// here throws except when memory is out. Thread: the calculator has no state; a token may be read from
// several threads at once.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/framework/ole_date_time.h"

namespace brindle {
struct LayoutProbe;  // the layout test's way in
struct RuleValue;
}  // namespace brindle

class BRINDLE_API CCalculator {
  public:
    // One element of an expression.
    class BRINDLE_API Token {
      public:
        enum TType { OperatorToken = 0, LiteralToken = 1, FunctionToken = 2 };

        // --- virtual operations, in slot order ---
        virtual ~Token();
        // What kind of token it is.
        virtual TType GetTType() const = 0;
        // The token as it appears in the text of a reverse Polish expression.
        virtual std::string AsString() const = 0;

      protected:
        Token() = default;
        Token(const Token&) = default;
        Token& operator=(const Token&) = default;
    };

    // An operator as a token.
    class BRINDLE_API Operator : public Token {
      public:
        enum Type : int {
            None = 0,
            And = 1,
            Or = 2,
            Not = 3,
            Plus = 4,
            Minus = 5,
            Multiply = 6,
            Divide = 7,
            Power = 8,
            Equal = 9,
            Less = 10,
            Greater = 11,
            NotEqual = 12,
            LessEqual = 13,
            GreaterEqual = 14,
            LeftParen = 15,  // marks "(" while a text is converted; never in an Expression
        };

        explicit Operator(Type type) noexcept : m_type(type) {}
        ~Operator() override;
        TType GetTType() const override;
        std::string AsString() const override;  // "&", "<=" ...; "" for None and LeftParen

        Type GetType() const noexcept { return m_type; }
        int GetPriority() const noexcept;  // 0 to 2

      private:
        friend struct brindle::LayoutProbe;
        Type m_type;
    };

    // A typed value.
    class BRINDLE_API Literal : public Token {
      public:
        enum Type : int {
            Bool = 0,
            Double = 1,
            String = 2,
            Int = 3,
            DateTime = 4,
            Address = 5,
            TimeSpan = 6
        };

        Literal() = default;  // the empty String: also the result of every operation without a meaning
        // A String that holds the text as it is; only FromString, SetValue and Create classify.
        explicit Literal(const std::string& text);
        explicit Literal(const char* text);  // likewise; null is the empty text
        // Of the type that holds such a value.
        explicit Literal(std::int32_t value) noexcept;
        explicit Literal(double value) noexcept;
        Literal(double value, Type type) noexcept;  // for TimeSpan: the value in seconds
        // Likewise.
        explicit Literal(const COleDateTime& date) noexcept;
        explicit Literal(bool value) noexcept;
        Literal(const Literal& other) = default;
        Literal(Literal&& other) = default;
        Literal& operator=(const Literal& other) = default;
        Literal& operator=(Literal&& other) = default;
        ~Literal() override;

        // Reads an operand of a rule: blanks around it, then one pair of double quotes, then one pair of "#" are
        // taken off and the rest is classified. Null when nothing but blanks is there. An unquoted String is
        // replaceable: the name of a value.
        static std::unique_ptr<Literal> Create(const std::string& text);

        TType GetTType() const override;
        // "TRUE" or "FALSE"; a number with 6 significant digits ("2.5", "1e+06"); the text; the integer;
        // "2024-01-02T10:00:00", where each part of an invalid date is -1.
        std::string AsString() const override;

        // Classifies the text: Double or Int, Bool, Address ("0001:02:03"), DateTime, else String.
        void FromString(const std::string& text);
        void SetValue(const std::string& text) { FromString(text); }

        Type GetType() const noexcept { return m_type; }
        bool IsReplaceable() const noexcept { return m_replaceable; }
        void SetReplaceable(bool replaceable) noexcept { m_replaceable = replaceable; }

        // False for zero, read as an integer (0.5 is false); of a String for "0", "0.0" and "false" in any case.
        bool AsBool() const;
        // Truncated toward zero; INT_MIN when it does not fit 32 bits. An address packed; a String as a number.
        std::int32_t AsInt() const;
        double AsDouble() const;
        // The date of a DateTime; 1899-12-30 of anything else.
        const COleDateTime& AsDateTime() const noexcept { return m_date; }

      private:
        friend struct brindle::LayoutProbe;
        friend struct brindle::RuleValue;

        std::string m_string;
        bool m_bool = false;
        std::int32_t m_int = 0;
        double m_double = 0;
        COleDateTime m_date;
        Type m_type = String;
        bool m_replaceable = false;
    };

    // A function call, "DATE()" or "TIMESPAN(days,hours,minutes,seconds)", with its whole text.
    class BRINDLE_API Function : public Token {
      public:
        explicit Function(const std::string& call) : m_call(call) {}
        ~Function() override;
        TType GetTType() const override;
        std::string AsString() const override;

        // The local time now (DATE, whatever its arguments are), the span (TIMESPAN with four integers), or the
        // empty String.
        Literal ToLiteral() const;

      private:
        friend struct brindle::LayoutProbe;
        std::string m_call;
    };

    // Tokens in order, owned. Can be moved but not copied.
    class BRINDLE_API Expression {
      public:
        Expression() = default;
        Expression(const Expression&) = delete;
        Expression(Expression&&) noexcept = default;
        Expression& operator=(const Expression&) = delete;
        Expression& operator=(Expression&&) noexcept = default;
        ~Expression() = default;

        void Add(Token* token);  // takes the token over; null is ignored
        int Size() const noexcept { return static_cast<int>(m_tokens.size()); }
        Token* operator[](int index) const { return m_tokens[static_cast<std::size_t>(index)].get(); }
        std::string AsString() const;  // the tokens' texts with single blanks between them

      private:
        std::vector<std::unique_ptr<Token>> m_tokens;
    };

    // Converts an infix rule text and appends its tokens. False when the text is empty, its parentheses do not
    // match or it holds no operand; `out` then keeps what was converted before the fault.
    bool ToReversePolish(const std::string& text, Expression& out) const;
    // Evaluates. False, and `result` unchanged, when the expression is empty or an operator lacks an operand.
    // Of several values that remain the last one is the result.
    bool Run(const Expression& rpn, Literal& result) const;

    // Whether every character is a digit; true of the empty text.
    static bool IsDigits(const std::string& text) noexcept;
    // Digits, at most one "." and at most one "-", wherever they stand. The empty text is numeric.
    static bool IsNumeric(const std::string& text) noexcept;
    // Exactly ten characters that are a device address.
    static bool IsOVAddress(const std::string& text) noexcept;
    // "2023-01-02T10:00:00" or "Mon Jan 02 10:00:00 2023". True when the text has one of the forms, also when
    // its parts are no date; `date` is then invalid. False leaves `date` unchanged.
    static bool IsDateTime(const std::string& text, COleDateTime& date) noexcept;
};
