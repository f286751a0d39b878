// Rules while they are written: what is said about every kind of broken rule, names and their values, results, limits.
#include "host/rule_edit.h"

#include <gtest/gtest.h>

#include "host/device_table.h"
#include "host/event_line.h"

namespace brindle::host {
namespace {

class RuleEditTest : public ::testing::Test {
  protected:
    RuleEditTest() {
        Problems problems;
        m_devices.Load(
            IniText("[0001:02:03]\nName=Own\nState=1\nModel=C3\nLevel=12\nRatio=2.5\nOn=TRUE\n"
                    "Since=2024-01-02T10:00:00\nHome=0001:02:09\n[0001:02:09]\nName=Other\nState=3\n",
                    "f", problems),
            "f", problems);
        EXPECT_TRUE(problems.empty());
    }
    void Happens(const std::string& line) {
        EventLine event;
        EXPECT_EQ(ParseEventLine(line, event), "");
        const CStateEvent* made = MakeEvent(event, CAddressOv());
        m_devices.Take(*made);
        made->Release();
    }
    // One name as a line: its text, device, type, value, why.
    static std::string Line(const RuleEditName& name) {
        return name.text + "|" + name.device + "|" + name.type + "|" + name.value + "|" + name.why;
    }
    static std::string Lines(const RuleEdit& edit) {
        std::string lines;
        for (const RuleEditName& name : edit.Names()) lines += Line(name) + "\n";
        return lines;
    }

    DeviceTable m_devices;
    RuleEdit m_edit{m_devices, CAddressOv(1, 2, 3)};
};

TEST_F(RuleEditTest, SaysWhatIsWrongAndWhere) {
    struct Row {
        const char* label;
        const char* text;
        const char* why;
        std::uint32_t column;
    };
    const Row rows[] = {
        {"nothing", "", "the rule is empty", 1},
        {"blanks", "   ", "the rule has no operand", 1},
        {"only an operator", "+", "the rule has no operand", 1},
        {"empty parentheses", "()", "the rule has no operand", 1},
        {"a left operand is missing", "-5", "an operand is missing", 1},
        {"a right operand is missing", "Level > ", "an operand is missing", 7},
        {"two operators", "Level == 3", "an operand is missing", 7},
        {"left open", "(Level > 3", "\"(\" without \")\"", 1},
        {"the second one left open", "(Level > (3)", "\"(\" without \")\"", 1},
        {"closed too often", "Level > 3)", "\")\" without \"(\"", 10},
        {"\"!\" behind an operator", "Level = !On", "an operand is missing", 7},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_edit.SetText(row.text);
        EXPECT_FALSE(m_edit.IsValid());
        EXPECT_EQ(m_edit.Fault().text, row.why);
        EXPECT_EQ(m_edit.Fault().column, row.column);
        EXPECT_EQ(m_edit.ReversePolish(), "");
        EXPECT_TRUE(m_edit.Names().empty());
        EXPECT_EQ(m_edit.Now(), RuleEditResult());
    }
}

TEST_F(RuleEditTest, NestedTooDeeply) {
    m_edit.SetText(std::string(101, '(') + "1" + std::string(101, ')'));
    EXPECT_TRUE(m_edit.IsValid());
    m_edit.SetText(std::string(200, '(') + "1" + std::string(200, ')'));
    EXPECT_FALSE(m_edit.IsValid());
    EXPECT_EQ(m_edit.Fault().text, "nested too deeply");
    EXPECT_GT(m_edit.Fault().column, 100u);
}

TEST_F(RuleEditTest, ResultsAtThisMoment) {
    struct Row {
        const char* text;
        const char* reversePolish;
        const char* type;
        const char* value;
        bool holds;
    };
    const Row rows[] = {
        {"Level > 10", "Level 10 >", "Bool", "TRUE", true},
        {"level < 10", "level 10 <", "Bool", "FALSE", false},
        {"Level + 1", "Level 1 +", "Int", "13", true},
        {"Level - 12", "Level 12 -", "Int", "0", false},
        {"Ratio * 2", "Ratio 2 *", "Double", "5", true},
        {"Level / 0", "Level 0 /", "String", "", false},
        {"nobody", "nobody", "String", "nobody", true},
        {"\"false\"", "FALSE", "Bool", "FALSE", false},
        {"0001:02:09,State >= 3 & Name = \"O%\"", "0001:02:09,State 3 >= Name O% = &", "Bool", "TRUE", true},
        {"TIMESPAN(0,1,30,0)", "TIMESPAN(0,1,30,0)", "TimeSpan", "5400", true},
        {"Since", "Since", "DateTime", "2024-01-02T10:00:00", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        m_edit.SetText(row.text);
        EXPECT_TRUE(m_edit.IsValid());
        EXPECT_EQ(m_edit.Fault().text, "");
        EXPECT_EQ(m_edit.ReversePolish(), row.reversePolish);
        EXPECT_EQ(m_edit.Now().type, row.type);
        EXPECT_EQ(m_edit.Now().value, row.value);
        EXPECT_EQ(m_edit.Now().holds, row.holds);
        EXPECT_EQ(m_edit.Now().why, "");
    }
}

TEST_F(RuleEditTest, NamesWithTypesAndValues) {
    m_edit.SetText("Level > 10 & 0001:02:09,State = 3 | Level + Ratio = On & Since = Home + Model");
    EXPECT_EQ(Lines(m_edit),
              "Level|0001:02:03|Int|12|\n"
              "0001:02:09,State|0001:02:09|Int|3|\n"
              "Ratio|0001:02:03|Double|2.5|\n"
              "On|0001:02:03|Bool|TRUE|\n"
              "Since|0001:02:03|DateTime|2024-01-02T10:00:00|\n"
              "Home|0001:02:03|Address|0001:02:09|\n"
              "Model|0001:02:03|String|C3|\n");
}

TEST_F(RuleEditTest, NamesNobodyAnswersSayWhy) {
    struct Row {
        const char* text;
        const char* line;
    };
    const Row rows[] = {
        {"Nobody",
         "Nobody|0001:02:03|String|Nobody|no device has the field \"Nobody\": it stands for itself (a text "
         "is written in quotes)"},
        {"0001:02:09,Model",
         "0001:02:09,Model|0001:02:09|String|Model|the device 0001:02:09 has no field \"Model\": "
         "it stands for itself (a text is written in quotes)"},
        {"0009:09:09,State",
         "0009:09:09,State|0009:09:09|String|State|\"0009:09:09,State\" asks for a device that "
         "does not exist"},
        {"0001:?:03,State",
         "0001:?:03,State||String|State|\"0001:?:03,State\" asks for a device without a full "
         "address"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        m_edit.SetText(row.text);
        ASSERT_EQ(m_edit.Names().size(), 1u);
        EXPECT_EQ(Line(m_edit.Names()[0]), row.line);
        EXPECT_FALSE(m_edit.Refresh());
    }
}

TEST_F(RuleEditTest, WithoutAnAddressOnlyNamesWithOneAreAnswered) {
    RuleEdit edit(m_devices, CAddressOv());
    edit.SetText("State = 1 & 0001:02:03,State = 1");
    EXPECT_EQ(
        Lines(edit),
        "State||String|State|\"State\" is a field of the object's own device, but the object has no full "
        "address\n0001:02:03,State|0001:02:03|Int|1|\n");
    EXPECT_EQ(edit.Now().value, "FALSE");
}

TEST_F(RuleEditTest, FollowsTheStation) {
    m_edit.SetText("State = 3");
    EXPECT_EQ(m_edit.Now().value, "FALSE");
    EXPECT_FALSE(m_edit.Refresh());
    Happens(R"({"kind":"state","address":"1:2:3","state":3})");
    EXPECT_TRUE(m_edit.Refresh());
    EXPECT_EQ(Lines(m_edit), "State|0001:02:03|Int|3|\n");
    EXPECT_TRUE(m_edit.Now().holds);
    EXPECT_FALSE(m_edit.Refresh());
}

TEST_F(RuleEditTest, ANameThatGetsADeviceIsAnswered) {
    m_edit.SetText("0007:00:01,State = 0");
    EXPECT_NE(m_edit.Names().at(0).why, "");
    m_devices.Subscribe(0x070001);
    EXPECT_TRUE(m_edit.Refresh());
    EXPECT_EQ(Lines(m_edit), "0007:00:01,State|0007:00:01|Int|0|\n");
    EXPECT_TRUE(m_edit.Now().holds);
}

TEST_F(RuleEditTest, ARuleThatWasBrokenIsWholeAgain) {
    m_edit.SetText("Level > 10");
    m_edit.SetText("Level > ");
    EXPECT_TRUE(m_edit.Names().empty());
    EXPECT_FALSE(m_edit.Refresh());
    m_edit.SetText("Level > 1");
    EXPECT_EQ(Lines(m_edit), "Level|0001:02:03|Int|12|\n");
    EXPECT_EQ(m_edit.Text(), "Level > 1");
}

// Every beginning of a rule is answered, and what it says holds together.
TEST_F(RuleEditTest, EveryPrefix) {
    const std::string rule =
        "(Level > 10 & !0001:02:09,Masked) | Text = \"a \\\" b%\" ^ DATE() - TIMESPAN(1,2,3,4)";
    for (std::size_t i = 0; i <= rule.size(); ++i) {
        SCOPED_TRACE(rule.substr(0, i));
        m_edit.SetText(rule.substr(0, i));
        EXPECT_EQ(m_edit.IsValid(), m_edit.Fault().text.empty());
        EXPECT_EQ(m_edit.IsValid(), !m_edit.Now().type.empty());
        EXPECT_EQ(m_edit.IsValid(), !m_edit.ReversePolish().empty());
        EXPECT_LE(m_edit.Fault().column, i + 1);
    }
}

TEST_F(RuleEditTest, TheLengthIsBounded) {
    std::string sum = "1";
    while (sum.size() + 4 <= RuleEdit::kLongestRule) sum += "+1";
    sum.resize(RuleEdit::kLongestRule, ' ');
    m_edit.SetText(sum);
    EXPECT_TRUE(m_edit.IsValid());
    EXPECT_EQ(m_edit.ReversePolish().size(), 16 * RuleEdit::kLongestShown + 4);
    EXPECT_EQ(m_edit.Now().why, "it is too long to be evaluated at every key");
    EXPECT_EQ(m_edit.Now().type, "");
    m_edit.SetText(sum + " ");
    EXPECT_FALSE(m_edit.IsValid());
    EXPECT_EQ(m_edit.Fault().text, "the rule is longer than 65536 bytes");
    EXPECT_EQ(m_edit.Fault().column, 0u);
    m_edit.SetText(std::string(10'000'000, '('));
    EXPECT_EQ(m_edit.Fault().text, "the rule is longer than 65536 bytes");
}

TEST_F(RuleEditTest, ManyNamesAreCounted) {
    std::string rule = "Level";
    for (int i = 0; i < 5'000; ++i) rule += "+n" + std::to_string(i);
    m_edit.SetText(rule + "+n7");
    EXPECT_TRUE(m_edit.IsValid());
    EXPECT_EQ(m_edit.Names().size(), RuleEdit::kMostNames);
    EXPECT_EQ(m_edit.MoreNames(), 5'001 - RuleEdit::kMostNames);
    EXPECT_EQ(m_edit.Names()[0].text, "Level");
    EXPECT_EQ(m_edit.Names()[63].text, "n62");
}

// What a device says may be long, and a rule may make it longer still.
TEST_F(RuleEditTest, LongValuesAreNotEvaluatedAtEveryKey) {
    m_devices.SetField(0x010203, "Text", std::string(1'000, 'x'));
    m_edit.SetText("Text + 1");
    EXPECT_EQ(m_edit.Now().value, std::string(RuleEdit::kLongestShown, 'x') + " ...");
    EXPECT_EQ(m_edit.Names().at(0).value, std::string(RuleEdit::kLongestShown, 'x') + " ...");
    std::string rule = "Text";
    for (int i = 0; i < 4; ++i) rule += " + Text";
    m_edit.SetText(rule);
    EXPECT_EQ(m_edit.Now().why, "it is too long to be evaluated at every key");
    m_devices.SetField(0x010203, "Text", std::string(100'000, 'x'));
    m_edit.SetText("Text");
    EXPECT_EQ(m_edit.Now().why, "it is too long to be evaluated at every key");
    EXPECT_EQ(m_edit.Names().at(0).value.size(), RuleEdit::kLongestShown + 4);
    EXPECT_EQ(m_edit.Names().at(0).why, "");
}

TEST_F(RuleEditTest, ALongNameIsCut) {
    m_edit.SetText(std::string(50'000, 'n'));
    EXPECT_EQ(m_edit.Names().at(0).text.size(), RuleEdit::kLongestShown + 4);
    EXPECT_LE(m_edit.Names().at(0).why.size(), 2 * RuleEdit::kLongestShown + 4);
    EXPECT_FALSE(m_edit.Refresh());
}

// A pattern that takes its time is as long as the limit lets it be; it does not fail the test, but hangs it.
TEST_F(RuleEditTest, ThePatternThatTakesLongest) {
    std::string pattern;
    while (pattern.size() + 8 < 1'000) pattern += "(a*)*b?";
    m_edit.SetText("\"" + std::string(1'000, 'a') + "\" = \"" + pattern + "c\"");
    EXPECT_TRUE(m_edit.IsValid());
    EXPECT_EQ(m_edit.Now().value, "FALSE");
}

}  // namespace
}  // namespace brindle::host
