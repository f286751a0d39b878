#include "brindle/expressions/rule_classify.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>

#include "brindle/framework/string_a.h"
#include "testing/vectors.h"

namespace {

using Literal = CCalculator::Literal;

const std::string kZero(1, '\0');

TEST(RuleClassify, IsDigits) {
    EXPECT_TRUE(CCalculator::IsDigits("0123456789"));
    EXPECT_TRUE(CCalculator::IsDigits(""));
    EXPECT_FALSE(CCalculator::IsDigits("-1"));
    EXPECT_FALSE(CCalculator::IsDigits("1.0"));
    EXPECT_FALSE(CCalculator::IsDigits("1" + kZero));
}

TEST(RuleClassify, IsNumericLooksAtNoPositions_Deliberate) {
    for (const char* text :
         {"", "0", "12", "-1", "5-", "-", ".", "1.5", "-.", "1-.5", "12345678901234567890"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(CCalculator::IsNumeric(text));
    }
    for (const char* text : {"1.2.3", "--1", "1e5", "+1", "a", " 1", "1 ", "0x1", "..", "1,5", "\xB2"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(CCalculator::IsNumeric(text));
    }
}

TEST(RuleClassify, IsOVAddress) {
    for (const std::string& text :
         {std::string("0001:02:03"), std::string("FFFF:ff:00"), std::string("1:2:345678"),
          std::string("????:??:??"), std::string("::,the end"), "1:2:3" + kZero + "abcd"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(CCalculator::IsOVAddress(text));
    }
    for (const char* text :
         {"", "1:2:3", "0001:02:033", "0001:02-03", "abcdefghij", "GGGG:00:00", "1234567890"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(CCalculator::IsOVAddress(text));
    }
}

TEST(RuleClassify, IsDateTime) {
    struct Row {
        const char* text;
        const char* expected;  // null: not of a date's form; "": no date
    };
    const Row rows[] = {
        {"2023-01-02T10:00:00", "2023-01-02T10:00:00"},
        {"2023-1-2T3:4:5", "2023-01-02T03:04:05"},
        {" 2023- 01- 02T 10: 00: 00 and more", "2023-01-02T10:00:00"},
        {"+2023-+1-+2T0:0:0", "2023-01-02T00:00:00"},
        {"0100-01-01T00:00:00", "0100-01-01T00:00:00"},
        {"9999-12-31T23:59:59", "9999-12-31T23:59:59"},
        {"2024-02-29T00:00:00", "2024-02-29T00:00:00"},
        {"2023-02-29T00:00:00", ""},
        {"2023-13-40T00:00:00", ""},
        {"99-01-01T00:00:00", ""},
        {"1-1-1T1:1:1", ""},
        {"100-1-1T1:1:1", "0100-01-01T01:01:01"},
        {"a b 1 1:1:1 1", ""},
        {"10000-01-01T00:00:00", ""},
        {"2023-01-02T24:00:00", ""},
        {"2023-01-02T10:60:00", ""},
        {"2023-01-02T10:00:60", ""},
        {"2023--1-02T10:00:00", ""},
        {"99999999999-01-02T10:00:00", ""},
        {"2023 -01-02T10:00:00", nullptr},
        {"2023-01-02t10:00:00", nullptr},
        {"2023-01-02 10:00:00", nullptr},
        {"2023-01-02T10:00", nullptr},
        {"2023-01-02T10:00:", nullptr},
        {"Mon Jan 02 10:00:00 2023", "2023-01-02T10:00:00"},
        {"xyz jAN 2 1:2:3 2023", "2023-01-02T01:02:03"},
        {"MonJan02 10:00:00 2023", "2023-01-02T10:00:00"},
        {"  M   Dec 31\t23:59:59\n1999", "1999-12-31T23:59:59"},
        {"Mon Foo 02 10:00:00 2023", ""},
        {"Mon Ja 02 10:00:00 2023", ""},
        {"Mon Feb 30 10:00:00 2023", ""},
        {"Monday Jan 02 10:00:00 2023", nullptr},
        {"Mon Jan 02 10:00:00", nullptr},
        {"Mon Jan 02 10:00 2023", nullptr},
        {"Mon", nullptr},
        {"", nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        COleDateTime date(2000, 1, 1, 0, 0, 0);
        const bool hasForm = CCalculator::IsDateTime(row.text, date);
        EXPECT_EQ(hasForm, row.expected != nullptr);
        if (!row.expected) {
            EXPECT_EQ(date, COleDateTime(2000, 1, 1, 0, 0, 0));
            continue;
        }
        EXPECT_EQ(date.GetStatus(), *row.expected ? COleDateTime::valid : COleDateTime::invalid);
        if (*row.expected) {
            EXPECT_EQ(Literal(date).AsString(), row.expected);
        }
    }
}

TEST(RuleClassify, BeginningsOfDatesAreNone) {
    struct FormRow {
        std::string text;
        std::size_t lastNumber;  // where it begins: from its first digit on the text is complete
    };
    const FormRow rows[] = {{"2023-01-02T10:00:00", 17}, {"Mon Jan 02 10:00:00 2023", 20}};
    for (const FormRow& row : rows) {
        for (std::size_t length = 0; length <= row.text.size(); ++length) {
            const std::string text = row.text.substr(0, length) + "xxxxxxxxxxxx";
            SCOPED_TRACE(text);
            COleDateTime date;
            EXPECT_EQ(CCalculator::IsDateTime(text, date), length > row.lastNumber);
        }
    }
}

TEST(RuleClassify, ZeroByteEndsADate) {
    COleDateTime date;
    EXPECT_TRUE(CCalculator::IsDateTime("2023-01-02T10:00:0" + kZero + "9", date));
    EXPECT_FALSE(CCalculator::IsDateTime("Mo" + kZero + " Jan 02 10:00:00 2023", date));
    EXPECT_FALSE(CCalculator::IsDateTime(kZero + "Mon Jan 02 10:00:00 2023", date));
}

TEST(RuleClassify, DatesHaveTheRecordedDayNumbers) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "oledate.json");
    int compared = 0;
    for (const auto& row : vectors["cases"]) {
        if (row.value("api", "") != "SystemTimeToVariantTime" || row.value("quirk", false) ||
            row.value("unsure", false))
            continue;
        const auto parts = row["parts"].get<std::vector<int>>();
        CStringA text;
        text.Format("%d-%d-%dT%d:%d:%d", parts[0], parts[1], parts[2], parts[3], parts[4], parts[5]);
        SCOPED_TRACE(text.GetString());
        Literal literal;
        literal.FromString(text.str());
        const bool isDate = row["ok"].get<bool>() && row["round_trip"].get<bool>() && parts[0] >= 100;
        EXPECT_EQ(literal.GetType(), isDate ? Literal::DateTime : Literal::String);
        if (isDate) {
            EXPECT_DOUBLE_EQ(literal.AsDouble(), row["date"].get<double>());
        }
        ++compared;
    }
    EXPECT_GT(compared, 10);
}

struct OperandRow {
    const char* label;
    std::string text;
    Literal::Type type;
    const char* expected;  // AsString
    bool replaceable;
};

TEST(RuleClassify, Operands) {
    const OperandRow rows[] = {
        {"two quotes", "\"\"", Literal::String, "", false},
        {"one quote", "\"", Literal::String, "\"", true},
        {"integer", "12", Literal::Int, "12", false},
        {"quoted integer", "\"12\"", Literal::Int, "12", false},
        {"blanks around", "   12  ", Literal::Int, "12", false},
        {"blanks inside quotes stay", "\" 12\"", Literal::String, " 12", false},
        {"decimal", "1.5", Literal::Double, "1.5", false},
        {"two points", "1.2.3", Literal::String, "1.2.3", true},
        {"two signs", "--1", Literal::String, "--1", true},
        {"sign behind", "5-", Literal::Int, "5", false},
        {"sign alone", "-", Literal::Int, "0", false},
        {"point alone", ".", Literal::Double, "0", false},
        {"nine digits", "999999999", Literal::Int, "999999999", false},
        {"largest", "2147483647", Literal::Int, "2147483647", false},
        {"one more", "2147483648", Literal::Int, "2147483647", false},
        {"zeros in front", "0000000000012", Literal::Int, "12", false},
        {"saturated", "99999999999", Literal::Int, "2147483647", false},
        {"saturated below", "-99999999999", Literal::Int, "-2147483648", false},
        {"exponent is text", "1e5", Literal::String, "1e5", true},
        {"true", "true", Literal::Bool, "TRUE", false},
        {"TRUE", "TRUE", Literal::Bool, "TRUE", false},
        {"false", "false", Literal::Bool, "FALSE", false},
        {"FALSE", "FALSE", Literal::Bool, "FALSE", false},
        {"True is text", "True", Literal::String, "True", true},
        {"trueness", "trueX", Literal::String, "trueX", true},
        {"tru", "tru", Literal::String, "tru", true},
        {"quoted true", "\"true\"", Literal::Bool, "TRUE", false},
        {"address", "0001:02:03", Literal::Address, "0001:02:03", false},
        {"short address is text", "1:2:3", Literal::String, "1:2:3", true},
        {"quoted address", "\"0001:02:03\"", Literal::Address, "0001:02:03", false},
        {"date", "2023-01-02T10:00:00", Literal::DateTime, "2023-01-02T10:00:00", false},
        {"named date", "Mon Jan 02 10:00:00 2023", Literal::DateTime, "2023-01-02T10:00:00", false},
        {"delimited date", "#2024-01-02T10:00:00#", Literal::DateTime, "2024-01-02T10:00:00", false},
        {"quoted delimited date", "\"#2024-01-02T10:00:00#\"", Literal::DateTime, "2024-01-02T10:00:00",
         false},
        {"quotes inside delimiters stay", "#\"x\"#", Literal::String, "\"x\"", true},
        {"impossible date", "2023-13-40T00:00:00", Literal::String, "2023-13-40T00:00:00", true},
        {"delimited name", "#name#", Literal::String, "name", true},
        {"two delimiters", "##", Literal::String, "", true},
        {"one delimiter", "#", Literal::String, "#", true},
        {"delimited blank", "# #", Literal::String, " ", true},
        {"name", "Temperature", Literal::String, "Temperature", true},
        {"quoted name", "\"Temperature\"", Literal::String, "Temperature", false},
        {"half quoted", "\"Temperature", Literal::String, "\"Temperature", true},
        {"two quoted", "\"a\" \"b\"", Literal::String, "a\" \"b", false},
        {"only blanks are trimmed", "\tx", Literal::String, "\tx", true},
    };
    for (const OperandRow& row : rows) {
        SCOPED_TRACE(row.label);
        const std::unique_ptr<Literal> literal = Literal::Create(row.text);
        ASSERT_TRUE(literal);
        EXPECT_EQ(literal->GetType(), row.type);
        EXPECT_EQ(literal->AsString(), row.expected);
        EXPECT_EQ(literal->IsReplaceable(), row.replaceable);
    }
}

TEST(RuleClassify, BlanksMakeNoOperand) {
    EXPECT_FALSE(Literal::Create(""));
    EXPECT_FALSE(Literal::Create("   "));
    EXPECT_TRUE(Literal::Create("\t"));
}

TEST(RuleClassify, EmptyTextIsAText) {
    Literal literal(12);
    literal.FromString("");
    EXPECT_EQ(literal.GetType(), Literal::String);
    EXPECT_EQ(literal.AsString(), "");
    EXPECT_EQ(literal.AsInt(), 0);
}

TEST(RuleClassify, HugeTextsAreClassifiedInLinearTime) {
    Literal literal;
    literal.FromString(std::string(10 << 20, '7'));
    EXPECT_EQ(literal.AsInt(), INT_MAX);
    literal.FromString(std::string(10 << 20, '7') + ".");
    EXPECT_EQ(literal.GetType(), Literal::Double);
    literal.FromString(std::string(10 << 20, ' ') + "x");
    EXPECT_EQ(literal.GetType(), Literal::String);
}

}  // namespace
