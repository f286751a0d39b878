#include "brindle/expressions/rule_convert.h"

#include <gtest/gtest.h>

#include <string>

#include "brindle/expressions/calculator.h"
#include "testing/slow_calculator.h"

namespace {

using brindle::ConvertRule;
using brindle::RuleFault;
using brindle::RuleProgram;

struct Row {
    const char* rule;
    const char* expected;  // reverse Polish
};

TEST(RuleConvert, ReversePolish) {
    const Row rows[] = {
        {"1 + 2 * 3", "1 2 3 * +"},
        {"2 ^ 3 ^ 2", "2 3 2 ^ ^"},
        {"a < b & c", "a b < c &"},
        {"a + b = c", "a b + c ="},
        {"a = b + c", "a b = c +"},
        {"\"x + y\" = Name", "x + y Name ="},
        {"DATE() - Stamp", "DATE() Stamp -"},
        {"!Alarm", "Alarm !"},
        {"a != b", "a b !="},
        {"a <= b", "a b <="},
        {"a >= b", "a b >="},
        {"a > b", "a b >"},
        {"a | b & c", "a b | c &"},
        {"a - b - c", "a b - c -"},
        {"a / b / c", "a b / c /"},
        {"a * b ^ c", "a b c ^ *"},
        {"a ^ b * c", "a b ^ c *"},
        {"(Level > 10) & !Alarm", "Level 10 > Alarm ! &"},
        {"((a))", "a"},
        {"\\\"a + b", "\\\"a b +"},
        {"\\\"a\t+ b", "\\\"a b +"},
        {"(1 + 2) * 3", "1 2 + 3 *"},
        {"1(2)", "1 2"},
        {"a(b)c", "a b c"},
        {"()a", "a"},
        {"a b", "a b"},
        {"1 2", "1 2"},
        {"0001:02:03,LEVEL > 10", "0001:02:03,LEVEL 10 >"},
        {"a==b", "a = b ="},
        {"a = !b", "a = b !"},
        {"a && b", "a & b &"},
        {"a <> b", "a < b >"},
        {"a =< b", "a = b <"},
        {"a ! = b", "a ! b ="},
        {"-5", "5 -"},
        {"3 * -5", "3 * 5 -"},
        {"a +", "a +"},
        {"x\"y&z\"w", "x\"y&z\"w"},
        {"\"a\\\"&b\" = c", "a\\\"&b c ="},
        {"\"a\\\\\"&b", "\"a\\\\\"&b"},
        {"\"open & more", "\"open & more"},
        {"\" ( \" = a", " (  a ="},
        {"1 + DATE()", "1 DATE() +"},
        {"  TIMESPAN(0,1,30,0)  ", "TIMESPAN(0,1,30,0)"},
        {"TIMESPAN (1, 2, (3), 4", "TIMESPAN (1, 2, (3) , 4"},
        {"TIMESPAN (1, 2, (3), 4)", nullptr},
        {"DATE(\"x\") + 1", "DATE(\"x\") 1 +"},
        {"Date()", "Date"},
        {"#2024-01-02T10:00:00#", "#2024 1 - 02T10:00:00# -"},
        {"\"#2024-01-02T10:00:00#\"", "2024-01-02T10:00:00"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        RuleProgram program;
        const bool converted = ConvertRule(row.rule, program).ok();
        CCalculator::Expression expression;
        EXPECT_EQ(CCalculator().ToReversePolish(row.rule, expression), converted);
        EXPECT_EQ(expression.AsString(), program.AsString());
        EXPECT_EQ(converted, row.expected != nullptr);
        if (row.expected) {
            EXPECT_EQ(program.AsString(), row.expected);
        }
    }
}

TEST(RuleConvert, SkippedCharacters_Deliberate) {
    struct ByteRow {
        const char* label;
        std::string rule;
        const char* expected;
    };
    const ByteRow rows[] = {
        {"tab between", "a\t+\tb", "a b +"},
        {"line breaks", "a\r\n+ b", "a b +"},
        {"inside a word", "a\tb", "ab"},
        {"inside quotes", "\"a\tb\" = c", "ab c ="},
        {"bytes from 80 on", "caf\xE9\x80\xFF = b", "caf b ="},
        {"zero byte", std::string("a\0b", 3), "ab"},
        {"7F stays", "a\x7F", "a\x7F"},
        {"function name with a tab", "DA\tTE() - a", "DATE() a -"},
        {"blanks, then a skipped character", "1 + \t DATE()", "1 DATE() +"},
        {"tab in a call", "TIMESPAN(1,\t2,3,4)", "TIMESPAN(1,2,3,4)"},
        {"two characters apart make two operators", "a !\t= b", "a ! b ="},
        {"a tab behind a backslash frees the quote", "\"a\\\t\"&b", "a\\ b &"},
        {"skipped at the end of an operand", "ab\t", "ab"},
    };
    for (const ByteRow& row : rows) {
        SCOPED_TRACE(row.label);
        RuleProgram program;
        EXPECT_TRUE(ConvertRule(row.rule, program).ok());
        EXPECT_EQ(program.AsString(), row.expected);
    }
}

TEST(RuleConvert, FunctionNameAloneMakesTheCall_Deliberate) {
    const Row rows[] = {
        {"DATES + 1", "DATES + 1"},
        {"DATE + 1 & b", "DATE + 1 & b"},
        {"DATE", "DATE"},
        {"DATE ", "DATE "},
        {"(1) & DATE", "1 DATE &"},
        {"a & TIMESPAN(1,2", "a TIMESPAN(1,2 &"},
        {"DATE) + 1", "DATE) 1 +"},
        {"XDATE() + 1", "XDATE 1 +"},
        {"\"DATE\" + 1", "DATE 1 +"},
        {"DATEDATE", "DATEDATE"},
        {"TIMESPANX)", "TIMESPANX)"},
        {"date + 1", "date 1 +"},
        {"DATE x)y", "DATE x) y"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        RuleProgram program;
        EXPECT_EQ(ConvertRule(row.rule, program).ok(), row.expected != nullptr);
        if (row.expected) {
            EXPECT_EQ(program.AsString(), row.expected);
        }
    }
    RuleProgram word;
    ConvertRule("DATE", word);
    EXPECT_EQ(word[0].kind, brindle::RuleStep::kName);
    RuleProgram call;
    ConvertRule("DATE ", call);
    EXPECT_EQ(call[0].kind, brindle::RuleStep::kFunction);
}

TEST(RuleConvert, QuoteInsideACallGoesOnBehindIt_Deliberate) {
    const Row rows[] = {
        {"DATE(\"a\") & b", "DATE(\"a\") b &"},
        {"DATE(\"a) & (b", "DATE(\"a) & (b"},  // "& (b" is one operand
        {"DATE(\"a) & \" & b", "DATE(\"a) & \" b &"},
        {"DATE(\\\"a) & b", "DATE(\\\"a) b &"},  // a backslash takes the quote's meaning away
        {"TIMESPAN(1+2,\"x)\",3)", nullptr},  // ends at the first ")", so that the second one closes nothing
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        RuleProgram program;
        EXPECT_EQ(ConvertRule(row.rule, program).ok(), row.expected != nullptr);
        if (row.expected) {
            EXPECT_EQ(program.AsString(), row.expected);
        }
    }
}

TEST(RuleConvert, StepsKnowWhereTheyStand) {
    const Row rows[] = {
        {"1 +  DATE() - Name", "0 5 2 14 12 "},
        {"  a", "2 "},
        {" \"b\" & !c", "1 8 7 5 "},
        {"  DATE()", "2 "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.rule);
        RuleProgram program;
        ASSERT_TRUE(ConvertRule(row.rule, program).ok());
        std::string positions;
        for (std::size_t i = 0; i < program.Size(); ++i)
            positions += std::to_string(program[i].position) + " ";
        EXPECT_EQ(positions, row.expected);
    }
}

TEST(RuleConvert, Rejects) {
    struct RejectRow {
        const char* rule;
        const char* why;
        std::size_t position;
        const char* converted;  // what stays in the program
    };
    const RejectRow rows[] = {
        {"", "the rule is empty", 0, ""},
        {"   ", "the rule has no operand", 0, ""},
        {"\t", "the rule has no operand", 0, ""},
        {"+", "the rule has no operand", 0, "+"},
        {"!", "the rule has no operand", 0, "!"},
        {"()", "the rule has no operand", 0, ""},
        {"(a", "\"(\" without \")\"", 0, "a"},
        {"(1", "\"(\" without \")\"", 0, "1"},
        {"1 + (2 * (3)", "\"(\" without \")\"", 4, "1 2 3 *"},
        {"a)", "\")\" without \"(\"", 1, "a"},
        {")", "\")\" without \"(\"", 0, ""},
        {"a + b)", "\")\" without \"(\"", 5, "a b +"},
        {"(DATE)", "\"(\" without \")\"", 0, "DATE)"},
    };
    for (const RejectRow& row : rows) {
        SCOPED_TRACE(row.rule);
        RuleProgram program;
        const RuleFault fault = ConvertRule(row.rule, program);
        ASSERT_FALSE(fault.ok());
        EXPECT_STREQ(fault.why, row.why);
        EXPECT_EQ(fault.position, row.position);
        EXPECT_EQ(program.AsString(), row.converted);
    }
}

TEST(RuleConvert, OperatorsOnlyCountWhenOthersPushThemOut_Deliberate) {
    RuleProgram program;
    EXPECT_TRUE(ConvertRule("+ +", program).ok());  // the second one pushes the first one out
    EXPECT_EQ(program.AsString(), "+ +");
    RuleProgram closed;
    EXPECT_TRUE(ConvertRule("(+)", closed).ok());  // and so does ")"
    EXPECT_EQ(closed.AsString(), "+");
}

TEST(RuleConvert, StackHoldsOneMoreThanItsCapacity_Deliberate) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '(') + "1" + std::string(depth, ')');
    };
    RuleProgram fits;
    EXPECT_TRUE(ConvertRule(nested(101), fits).ok());
    RuleProgram tooDeep;
    const RuleFault fault = ConvertRule(nested(102), tooDeep);
    EXPECT_STREQ(fault.why, "nested too deeply");
    EXPECT_EQ(fault.position, 101u);
    RuleProgram open;
    EXPECT_STREQ(ConvertRule(std::string(150, '(') + "1", open).why, "nested too deeply");
    // An operator that finds no room is dropped without a word.
    std::string powers = "1";
    for (int i = 0; i < 103; ++i) powers += "^1";
    RuleProgram dropped;
    EXPECT_TRUE(ConvertRule(powers, dropped).ok());
    EXPECT_EQ(dropped.Size(), 104u + 101u);
    // A "(" dropped and a ")" too few: the counts tell.
    RuleProgram counts;
    EXPECT_FALSE(ConvertRule(std::string(102, '(') + "1" + std::string(101, ')'), counts).ok());
}

TEST(RuleConvert, AppendsToAnExpression) {
    CCalculator::Expression expression;
    EXPECT_TRUE(CCalculator().ToReversePolish("1 + 2", expression));
    EXPECT_TRUE(CCalculator().ToReversePolish("!a", expression));
    EXPECT_EQ(expression.AsString(), "1 2 + a !");
    EXPECT_FALSE(CCalculator().ToReversePolish("(b", expression));
    EXPECT_EQ(expression.AsString(), "1 2 + a ! b");
}

TEST(RuleConvert, TokensOfAnExpression) {
    CCalculator::Expression expression;
    ASSERT_TRUE(CCalculator().ToReversePolish("\"x + y\" = Name & DATE()", expression));
    ASSERT_EQ(expression.Size(), 5);
    const auto literal = [&](int i) { return static_cast<const CCalculator::Literal*>(expression[i]); };
    EXPECT_EQ(expression[0]->GetTType(), CCalculator::Token::LiteralToken);
    EXPECT_FALSE(literal(0)->IsReplaceable());
    EXPECT_TRUE(literal(1)->IsReplaceable());
    EXPECT_EQ(expression[2]->GetTType(), CCalculator::Token::OperatorToken);
    EXPECT_EQ(expression[3]->GetTType(), CCalculator::Token::FunctionToken);
    EXPECT_EQ(expression[4]->AsString(), "&");
}

TEST(RuleConvert, IsOperator) {
    const std::string characters = "&|!+-*/^=<>";
    const int types[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11};
    for (int byte = 0; byte < 256; ++byte) {
        const std::size_t at = characters.find(static_cast<char>(byte));
        const int expected = at == std::string::npos ? 0 : types[at];
        EXPECT_EQ(brindle::IsOperator(static_cast<char>(byte)), expected) << byte;
    }
}

// Every beginning of a rule is converted as the slow conversion does it.
TEST(RuleConvert, AllPrefixes) {
    const std::string rules[] = {
        "(0001:02:03,LEVEL >= 10.5) & !(STATUS = \"OK%\\\"(\") | TIMESPAN(0, 1,30,0) < DATE() - "
        "\"2024-01-02T10:00:00\"",
        "((a+b)*2<=c^d)/\"x\"!=#y#|\tDATE \xE9 )-1",
    };
    for (const std::string& rule : rules) {
        for (std::size_t length = 0; length <= rule.size(); ++length) {
            const std::string prefix = rule.substr(0, length);
            SCOPED_TRACE(prefix);
            RuleProgram program;
            brindle::testing::SlowExpression slow;
            EXPECT_EQ(ConvertRule(prefix, program).ok(), brindle::testing::SlowConvert(prefix, slow));
            EXPECT_EQ(program.AsString(), brindle::testing::SlowText(slow));
        }
    }
}

TEST(RuleConvert, LongRulesTakeLinearTime) {
    std::string sum = "1";
    for (int i = 0; i < 500000; ++i) sum += "+1";
    RuleProgram program;
    EXPECT_TRUE(ConvertRule(sum, program).ok());
    EXPECT_EQ(program.Size(), 1000001u);
    RuleProgram deep;
    EXPECT_FALSE(ConvertRule(std::string(1000000, '(') + "1" + std::string(1000000, ')'), deep).ok());
    RuleProgram word;
    EXPECT_TRUE(ConvertRule(std::string(1000000, 'x'), word).ok());
    RuleProgram blanks;
    EXPECT_FALSE(ConvertRule(std::string(1000000, ' '), blanks).ok());
    RuleProgram broken;
    std::string tabs;
    for (int i = 0; i < 500000; ++i) tabs += "\tx";
    EXPECT_TRUE(ConvertRule(tabs, broken).ok());
    EXPECT_EQ(broken[0].value.text.size(), 500000u);
}

}  // namespace
