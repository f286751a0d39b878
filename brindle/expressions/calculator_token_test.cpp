#include <gtest/gtest.h>

#include <memory>
#include <type_traits>

#include "brindle/expressions/calculator.h"
#include "brindle/expressions/rule_program.h"

namespace {

using Operator = CCalculator::Operator;
using Literal = CCalculator::Literal;
using Function = CCalculator::Function;
using Token = CCalculator::Token;
using Expression = CCalculator::Expression;

TEST(CalculatorToken, Operators) {
    struct Row {
        int value;
        Operator::Type type;
        const char* text;
        int priority;
    };
    const Row rows[] = {
        {0, Operator::None, "", 0},
        {1, Operator::And, "&", 0},
        {2, Operator::Or, "|", 0},
        {3, Operator::Not, "!", 1},
        {4, Operator::Plus, "+", 1},
        {5, Operator::Minus, "-", 1},
        {6, Operator::Multiply, "*", 2},
        {7, Operator::Divide, "/", 2},
        {8, Operator::Power, "^", 2},
        {9, Operator::Equal, "=", 1},
        {10, Operator::Less, "<", 1},
        {11, Operator::Greater, ">", 1},
        {12, Operator::NotEqual, "!=", 1},
        {13, Operator::LessEqual, "<=", 1},
        {14, Operator::GreaterEqual, ">=", 1},
        {15, Operator::LeftParen, "", 0},
        {16, static_cast<Operator::Type>(16), "", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        const Operator op(row.type);
        EXPECT_EQ(op.GetType(), row.value);
        EXPECT_EQ(op.GetTType(), Token::OperatorToken);
        EXPECT_EQ(op.AsString(), row.text);
        EXPECT_EQ(op.GetPriority(), row.priority);
        EXPECT_EQ(brindle::IsLeftAssociative(row.type), row.type != Operator::Power);
    }
}

TEST(CalculatorToken, TypeNumbers) {
    EXPECT_EQ(Token::OperatorToken, 0);
    EXPECT_EQ(Token::LiteralToken, 1);
    EXPECT_EQ(Token::FunctionToken, 2);
    EXPECT_EQ(Literal::Bool, 0);
    EXPECT_EQ(Literal::Double, 1);
    EXPECT_EQ(Literal::String, 2);
    EXPECT_EQ(Literal::Int, 3);
    EXPECT_EQ(Literal::DateTime, 4);
    EXPECT_EQ(Literal::Address, 5);
    EXPECT_EQ(Literal::TimeSpan, 6);
}

TEST(CalculatorToken, FunctionKeepsItsCall) {
    const Function function("TIMESPAN(1,2,3,4)");
    EXPECT_EQ(function.GetTType(), Token::FunctionToken);
    EXPECT_EQ(function.AsString(), "TIMESPAN(1,2,3,4)");
}

// Counts how many of it live.
class CountedToken final : public Token {
  public:
    explicit CountedToken(int& count) : m_count(count) { ++m_count; }
    ~CountedToken() override { --m_count; }
    TType GetTType() const override { return FunctionToken; }
    std::string AsString() const override { return "counted"; }

  private:
    int& m_count;
};

TEST(CalculatorToken, ExpressionOwnsItsTokens) {
    int living = 0;
    {
        Expression expression;
        EXPECT_EQ(expression.Size(), 0);
        EXPECT_EQ(expression.AsString(), "");
        expression.Add(new CountedToken(living));
        Token* const second = new CountedToken(living);
        expression.Add(second);
        expression.Add(nullptr);
        EXPECT_EQ(expression.Size(), 2);
        EXPECT_EQ(expression[1], second);
        EXPECT_EQ(expression.AsString(), "counted counted");
        const Expression moved = std::move(expression);
        EXPECT_EQ(moved.Size(), 2);
        EXPECT_EQ(living, 2);
    }
    EXPECT_EQ(living, 0);
}

TEST(CalculatorToken, ExpressionMovesButDoesNotCopy_Deliberate) {
    static_assert(std::is_nothrow_move_constructible_v<Expression> &&
                  std::is_nothrow_move_assignable_v<Expression>);
    static_assert(!std::is_copy_constructible_v<Expression> && !std::is_copy_assignable_v<Expression>);
    static_assert(std::is_abstract_v<Token> && std::has_virtual_destructor_v<Token>);
    static_assert(std::is_empty_v<CCalculator>);
}

TEST(CalculatorToken, LiteralConstructors) {
    const COleDateTime date(2024, 1, 2, 3, 4, 5);
    struct Row {
        const char* label;
        Literal literal;
        Literal::Type type;
        const char* text;
    };
    const Row rows[] = {
        {"default", Literal(), Literal::String, ""},
        {"text is not classified", Literal(std::string("12")), Literal::String, "12"},
        {"characters are a text, not a truth value", Literal("true"), Literal::String, "true"},
        {"null", Literal(static_cast<const char*>(nullptr)), Literal::String, ""},
        {"int", Literal(12), Literal::Int, "12"},
        {"double", Literal(1.5), Literal::Double, "1.5"},
        {"span", Literal(90.0, Literal::TimeSpan), Literal::TimeSpan, "90"},
        {"date", Literal(date), Literal::DateTime, "2024-01-02T03:04:05"},
        {"bool", Literal(true), Literal::Bool, "TRUE"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(row.literal.GetType(), row.type);
        EXPECT_EQ(row.literal.GetTType(), Token::LiteralToken);
        EXPECT_EQ(row.literal.AsString(), row.text);
        EXPECT_FALSE(row.literal.IsReplaceable());
    }
    EXPECT_EQ(Literal(date).AsDateTime(), date);
    EXPECT_EQ(Literal(5).AsDateTime(), COleDateTime());
}

TEST(CalculatorToken, DefaultIsTheEmptyString) {
    const Literal literal;
    EXPECT_EQ(literal.GetType(), Literal::String);
    EXPECT_EQ(literal.AsString(), "");
    EXPECT_TRUE(literal.AsBool());
    EXPECT_EQ(literal.AsInt(), 0);
    EXPECT_EQ(literal.AsDouble(), 0.0);
    EXPECT_EQ(literal.AsDateTime(), COleDateTime());
    EXPECT_EQ(literal.AsDateTime().GetStatus(), COleDateTime::valid);
}

TEST(CalculatorToken, CopiesHaveEveryField) {
    Literal literal("text");
    literal.SetReplaceable(true);
    Literal copy = literal;
    EXPECT_EQ(copy.AsString(), "text");
    EXPECT_TRUE(copy.IsReplaceable());
    copy = Literal(7);
    EXPECT_EQ(copy.AsInt(), 7);
    EXPECT_FALSE(copy.IsReplaceable());
    const COleDateTime date(2024, 1, 2, 3, 4, 5);
    for (const Literal& original :
         {Literal(true), Literal(1.5), Literal(date), Literal(90.0, Literal::TimeSpan)}) {
        SCOPED_TRACE(original.AsString());
        Literal assigned("before");
        assigned = original;
        EXPECT_EQ(assigned.GetType(), original.GetType());
        EXPECT_EQ(assigned.AsString(), original.AsString());
        EXPECT_EQ(Literal(original).AsString(), original.AsString());
    }
}

TEST(CalculatorToken, FromStringClearsWhatTheTypeDoesNotUse) {
    Literal literal("text");
    literal.FromString("2024-01-02T03:04:05");
    EXPECT_EQ(literal.AsDateTime(), COleDateTime(2024, 1, 2, 3, 4, 5));
    literal.FromString("12");
    EXPECT_EQ(literal.AsDateTime(), COleDateTime());
    literal.FromString("");
    EXPECT_EQ(literal.AsString(), "");
}

TEST(CalculatorToken, SetValueClassifiesAgain) {
    Literal literal("name");
    literal.SetReplaceable(true);
    literal.SetValue("12");
    EXPECT_EQ(literal.GetType(), Literal::Int);
    EXPECT_TRUE(literal.IsReplaceable());  // is for its owner to clear
    literal.SetValue("1.5");
    EXPECT_EQ(literal.GetType(), Literal::Double);
    EXPECT_EQ(literal.AsInt(), 1);
    literal.SetValue("x");
    EXPECT_EQ(literal.AsString(), "x");
}

}  // namespace
