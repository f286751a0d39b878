#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <string>
#include <vector>

#include "brindle/variables/variable_manager.h"
#include "testing/slow_resolve.h"

namespace {

using brindle::testing::SlowResolve;
using brindle::testing::SlowScope;

struct Scopes {
    explicit Scopes(const std::vector<SlowScope>& contents) : managers(contents.size()) {
        for (std::size_t i = 0; i < contents.size(); ++i) {
            for (const auto& [name, value] : contents[i]) managers[i].addVariable(Variable(name, value));
            if (i > 0) managers[i - 1].setParent(&managers[i]);
        }
    }
    std::vector<VariableManager> managers;
};

TEST(VariableManagerText, ContainsVariable) {
    struct Row {
        const char* text;
        bool expected;
    };
    const Row rows[] = {{"", false},   {"}{", false},  {"{}", true},    {"{", false},  {"}", false},
                        {"{a}", true}, {"a{b", false}, {"}{}", true},   {"{{}", true}, {"a}b{c", false},
                        {"{a", false}, {"a}", false},  {"x{ y}z", true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(VariableManager::containsVariable(row.text), row.expected);
    }
}

TEST(VariableManagerText, EncloseInBrackets) {
    struct Row {
        const char* name;
        const char* expected;
    };
    const Row rows[] = {{"", ""},     {"x", "{x}"}, {"{x}", "{x}"}, {"a{b}c", "{a{b}c}"},
                        {" ", "{ }"}, {"{", "{"},   {"}", "}"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(VariableManager::encloseInBrackets(row.name), row.expected);
    }
}

TEST(VariableManagerText, EncloseLeavesHalfBracketsAlone_Deliberate) {
    EXPECT_EQ(VariableManager::encloseInBrackets("{abc"), "{abc");
    EXPECT_EQ(VariableManager::encloseInBrackets("abc}"), "abc}");
}

struct ResolveRow {
    const char* label;
    std::vector<SlowScope> scopes;  // innermost first
    const char* text;
    bool result;
    const char* expected;
};

const SlowScope kInner = {{"a", "1"},     {"b", "2"},     {"a1", "x"},      {"empty", ""},
                          {"ref", "{b}"}, {"{q}", "odd"}, {" s ", "spaced"}};

const std::vector<ResolveRow>& Rows() {
    static const std::vector<ResolveRow> rows = {
        {"no references", {kInner}, "no refs", false, "no refs"},
        {"empty text", {kInner}, "", false, ""},
        {"unknown name in any scope", {kInner, {}}, "{x}", true, "{x}"},
        {"known name", {kInner}, "{a}", true, "1"},
        {"text around", {kInner}, "<{a}|{b}>", true, "<1|2>"},
        {"case counts", {kInner}, "{A}", true, "{A}"},
        {"spaces belong to the name", {kInner}, "{ s }{ a}", true, "spaced{ a}"},
        {"empty value", {kInner}, "[{empty}]", true, "[]"},
        {"empty name", {kInner}, "{}", true, "{}"},
        {"child and parent", {{{"a", "1"}}, {{"b", "2"}}}, "{a}{b}", true, "12"},
        {"the inner scope wins", {{{"a", "in"}}, {{"a", "out"}}}, "{a}", true, "in"},
        {"a nested reference builds a name", {{{"b", "1"}, {"a1", "x"}}}, "{a{b}}", true, "x"},
        {"text behind a nested reference", {{{"b", "1"}, {"a1c", "y"}}}, "{a{b}c}", true, "y"},
        {"two nested references", {{{"b", "1"}, {"11", "z"}}}, "{{b}{b}}", true, "z"},
        {"a nested reference unresolved", {{{"a{b}", "found"}}}, "{a{b}}", true, "found"},
        {"a nested reference of the parent", {{{"c", "3"}}, {{"b", "1"}, {"a1", "x"}}}, "{a{b}}", true, "x"},
        {"a name with brackets", {{{"{q}", "odd"}}}, "{{q}}", true, "odd"},
        {"values are not searched again", {kInner}, "{ref}", true, "{b}"},
        {"values are searched by the parent", {{{"ref", "{b}"}}, {{"b", "2"}}}, "{ref}", true, "2"},
        {"values of the parent are not searched by the child",
         {{{"b", "2"}}, {{"r", "{b}"}}},
         "{r}",
         true,
         "{b}"},
        {"what would close a value's bracket is cut", {{{"r", "{b"}}, {{"b", "2"}}}, "{r}}", true, "{b"},
        {"unclosed at the end", {kInner}, "{b}{a", true, "21"},
        {"unclosed and unknown gets its bracket", {kInner}, "{b}{x", true, "2{x}"},
        {"two unclosed", {{{"b", "1"}, {"a1", "x"}}}, "{}{a{b", true, "{}x"},
        {"unclosed alone is no reference", {kInner}, "{a", false, "{a"},
        {"stray bracket cuts the rest", {kInner}, "{a}}tail{b}", true, "1"},
        {"stray bracket first", {kInner}, "}{a}", false, "}{a}"},
        {"text and stray bracket first", {kInner}, "t}{a}", false, "t}{a}"},
        {"brackets the wrong way round", {kInner}, "}{", false, "}{"},
        {"the parent is not asked without references", {{}, {{"a", "1"}}}, "}{a}", false, "}{a}"},
        {"the chain stops where nothing is left", {{{"a", "x"}}, {}, {{"x", "y"}}}, "{a}", true, "x"},
        {"grandparent", {{}, {}, {{"a", "far"}}}, "{a}", true, "far"},
        {"high bytes", {{{"\xE4", "\xFC"}}}, "{\xE4}", true, "\xFC"},
    };
    return rows;
}

TEST(VariableManagerResolve, Rows) {
    for (const ResolveRow& row : Rows()) {
        SCOPED_TRACE(row.label);
        const Scopes scopes(row.scopes);
        CStringA text = row.text;
        EXPECT_EQ(scopes.managers[0].resolve(text), row.result);
        EXPECT_EQ(text, row.expected);
    }
}

TEST(VariableManagerResolve, SlowOracleAgreesOnTheRows) {
    for (const ResolveRow& row : Rows()) {
        SCOPED_TRACE(row.label);
        std::string text = row.text;
        EXPECT_EQ(SlowResolve::Run(text, row.scopes), row.result);
        EXPECT_EQ(text, row.expected);
    }
}

void ExpectSame(const std::string& text, const std::vector<SlowScope>& contents, const Scopes& scopes) {
    std::string slow = text;
    const bool slowResult = SlowResolve::Run(slow, contents);
    CStringA fast = text;
    ASSERT_EQ(scopes.managers[0].resolve(fast), slowResult) << text;
    ASSERT_EQ(fast.str(), slow) << text;
}

TEST(VariableManagerResolve, EveryPrefixAgreesWithTheOracle) {
    const std::vector<SlowScope> contents = {kInner, {{"x", "{a}"}, {"1", "one"}}};
    const Scopes scopes(contents);
    const std::string whole = "a{a}b{{ref}}{x}{a{a}}{empty}{nope{b}}}{tail}";
    for (std::size_t length = 0; length <= whole.size(); ++length)
        ExpectSame(whole.substr(0, length), contents, scopes);
}

TEST(VariableManagerResolve, RandomTextsAgreeWithTheOracle) {
    std::mt19937 random(20200101);
    const auto pick = [&](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    static const char* const kPieces[] = {"{",   "}",  "{",  "}",  "a", "b", "{a}",
                                          "{b}", "ab", "{{", "}}", "",  " "};
    const auto text = [&](std::size_t longest) {
        std::string made;
        for (std::size_t i = pick(longest); i-- > 0;) made += kPieces[pick(std::size(kPieces))];
        return made;
    };
    for (int round = 0; round < 20'000; ++round) {
        std::vector<SlowScope> contents(1 + pick(3));
        for (SlowScope& scope : contents)
            for (std::size_t i = pick(6); i-- > 0;)
                if (std::string name = text(4); !name.empty()) scope[name] = text(5);
        ExpectSame(text(24), contents, Scopes(contents));
        if (HasFatalFailure()) FAIL() << "round " << round;
    }
}

TEST(VariableManagerResolve, DeepNestingUsesNoStack) {
    constexpr std::size_t kDepth = 100'000;
    VariableManager outer;
    VariableManager scope;
    scope.setParent(&outer);
    scope.addVariable(Variable("a", "a"));  // "{a}" is "a" again: every level finds a value
    struct Row {
        const char* label;
        std::string text;
        std::string expected;
    };
    const std::string open(kDepth, '{');
    const std::string close(kDepth, '}');
    const Row rows[] = {
        {"balanced, all known", open + "a" + close, "a"},
        {"balanced, none known", open + "b" + close, open + "b" + close},
        {"unclosed", "{}" + open, "{}" + open + close},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA text = row.text;
        EXPECT_TRUE(scope.resolve(text));
        EXPECT_TRUE(text == row.expected);
    }
}

// A hostile chain of scopes, each value naming the next one a hundred times, stays within the limit.
TEST(VariableManagerResolve, ResultIsLimited) {
    const auto name = [](int level) { return std::string(1000, 'v') + std::to_string(level); };
    std::vector<SlowScope> contents;
    for (int level = 0; level < 8; ++level) {
        std::string value;
        for (int i = 0; i < 100; ++i) value += "{" + name(level + 1) + "}";
        contents.push_back({{name(level), value}});
    }
    const Scopes scopes(contents);
    CStringA text = "{" + name(0) + "}";
    EXPECT_TRUE(scopes.managers[0].resolve(text));
    EXPECT_GT(text.str().size(), VariableManager::kResolveLimit / 2);
    EXPECT_LE(text.str().size(), VariableManager::kResolveLimit);
}

TEST(VariableManagerResolve, ReferencesWithZeroBytesAreNames) {
    VariableManager scope;
    scope.addVariable(Variable(std::string("a\0b", 3), "zero"));
    CStringA text = std::string("{a\0b}{a}", 8);
    EXPECT_TRUE(scope.resolve(text));
    EXPECT_EQ(text, "zero{a}");
}

}  // namespace
