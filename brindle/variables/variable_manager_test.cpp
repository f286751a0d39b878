#include "brindle/variables/variable_manager.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace {

std::string Dump(const VariableManager& scope) {
    std::string text;
    for (const Variable& variable : scope.getVariables())
        text += variable.name().str() + "=" + variable.value().str() + ";";
    return text;
}

VariableManager Scope(const std::vector<std::pair<const char*, const char*>>& variables) {
    VariableManager scope;
    for (const auto& [name, value] : variables) scope.addVariable(Variable(name, value));
    return scope;
}

TEST(Variable, HoldsNameAndValue) {
    Variable variable;
    EXPECT_EQ(variable.name(), "");
    EXPECT_EQ(variable.value(), "");
    variable.setName("a");
    variable.setValue("1");
    const Variable copy = variable;
    variable.setValue("2");
    EXPECT_EQ(copy.name(), "a");
    EXPECT_EQ(copy.value(), "1");
    Variable assigned("x", "y");
    assigned = copy;
    EXPECT_EQ(assigned.name(), "a");
    EXPECT_EQ(Variable::empty().name(), "");
    EXPECT_EQ(Variable::empty().value(), "");
}

TEST(VariableManager, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<VariableManager>);
}

TEST(VariableManager, StartsEmptyWithoutParent) {
    VariableManager scope;
    EXPECT_TRUE(scope.getVariables().empty());
    EXPECT_EQ(scope.parent(), nullptr);
}

TEST(VariableManager, AddsAndRemoves) {
    struct Row {
        const char* label;
        void (*change)(VariableManager&);
        const char* expected;
    };
    const Row rows[] = {
        {"adds", [](VariableManager& s) { s.addVariable(Variable("c", "3")); }, "a=1;b=2;c=3;"},
        {"overwrites", [](VariableManager& s) { s.addVariable(Variable("a", "9")); }, "a=9;b=2;"},
        {"an empty value is a value", [](VariableManager& s) { s.addVariable(Variable("a", "")); },
         "a=;b=2;"},
        {"an empty name is ignored", [](VariableManager& s) { s.addVariable(Variable("", "x")); },
         "a=1;b=2;"},
        {"case counts", [](VariableManager& s) { s.addVariable(Variable("A", "x")); }, "A=x;a=1;b=2;"},
        {"order is that of unsigned bytes",
         [](VariableManager& s) {
             s.addVariable(Variable("\xE9", "e"));
             s.addVariable(Variable("aa", "x"));
             s.addVariable(Variable("_", "u"));
         },
         "_=u;a=1;aa=x;b=2;\xE9=e;"},
        {"removes", [](VariableManager& s) { s.removeVariable("a"); }, "b=2;"},
        {"removes only what is there", [](VariableManager& s) { s.removeVariable("A"); }, "a=1;b=2;"},
        {"clears", [](VariableManager& s) { s.clear(); }, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        VariableManager scope = Scope({{"b", "2"}, {"a", "1"}});
        row.change(scope);
        EXPECT_EQ(Dump(scope), row.expected);
    }
}

TEST(VariableManager, LooksUpExactNamesInThisScopeOnly) {
    VariableManager outer = Scope({{"outer", "o"}});
    VariableManager scope = Scope({{"a", "1"}});
    scope.setParent(&outer);
    struct Row {
        const char* label;
        const char* name;
        bool found;
        const char* value;
    };
    const Row rows[] = {
        {"present", "a", true, "1"},
        {"other case", "A", false, "before"},
        {"with brackets", "{a}", false, "before"},
        {"in the parent", "outer", false, "before"},
        {"empty", "", false, "before"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        CStringA value = "before";
        EXPECT_EQ(scope.getValue(row.name, value), row.found);
        EXPECT_EQ(value, row.value);
    }
}

// Names are told apart by their first bytes where these differ, and in full where they do not.
TEST(VariableManager, FindsNamesWithCommonBeginnings) {
    std::vector<std::string> names = {
        std::string("a\0", 2), std::string("a\0b", 3), "a", "b", "\xFF", "exactly8", "exactly8+"};
    for (int i = 0; i < 200; ++i) names.push_back("common_beginning_" + std::to_string(i * 7919 % 200));
    VariableManager scope;
    for (const std::string& name : names) {
        CStringA value;
        EXPECT_FALSE(scope.getValue(name, value)) << name;
        scope.addVariable(Variable(name, "=" + name));
    }
    const VariableManager copy = scope;
    for (std::size_t i = 0; i < names.size(); ++i) {
        CStringA value;
        EXPECT_TRUE(scope.getValue(names[i], value)) << names[i];
        EXPECT_EQ(value.str(), "=" + names[i]);
        scope.removeVariable(names[i]);
        EXPECT_FALSE(scope.getValue(names[i], value)) << names[i];
        if (i + 1 < names.size()) {
            EXPECT_TRUE(scope.getValue(names[i + 1], value)) << names[i + 1];
        }
        EXPECT_TRUE(copy.getValue(names[i], value)) << names[i];
    }
    EXPECT_TRUE(scope.getVariables().empty());
}

TEST(VariableManager, ClearKeepsTheParent) {
    VariableManager outer;
    VariableManager scope = Scope({{"a", "1"}});
    scope.setParent(&outer);
    scope.clear();
    EXPECT_EQ(scope.parent(), &outer);
}

TEST(VariableManager, CopiesTakeVariablesAndParent) {
    VariableManager outer;
    VariableManager scope = Scope({{"a", "1"}});
    scope.setParent(&outer);
    const VariableManager copy(scope);
    EXPECT_EQ(Dump(copy), "a=1;");
    EXPECT_EQ(copy.parent(), &outer);
    VariableManager assigned = Scope({{"z", "26"}});
    assigned = scope;
    scope.addVariable(Variable("b", "2"));
    EXPECT_EQ(Dump(assigned), "a=1;");
    EXPECT_EQ(assigned.parent(), &outer);
}

TEST(VariableManager, CopyFromTakesVariablesOnly) {
    VariableManager outer, otherOuter;
    VariableManager scope = Scope({{"a", "1"}});
    scope.setParent(&outer);
    VariableManager other = Scope({{"b", "2"}});
    other.setParent(&otherOuter);
    scope.copyFrom(nullptr);
    EXPECT_EQ(Dump(scope), "a=1;");
    scope.copyFrom(&other);
    EXPECT_EQ(Dump(scope), "b=2;");
    EXPECT_EQ(scope.parent(), &outer);
}

TEST(VariableManager, CopyFromItselfLeavesItEmpty_Deliberate) {
    VariableManager scope = Scope({{"a", "1"}});
    scope.copyFrom(&scope);
    EXPECT_EQ(Dump(scope), "");
}

TEST(VariableManager, ParentsNeverFormACycle) {
    VariableManager a, b, c;
    a.setParent(&a);
    EXPECT_EQ(a.parent(), nullptr) << "itself";
    b.setParent(&a);
    c.setParent(&b);
    a.setParent(&c);
    EXPECT_EQ(a.parent(), nullptr) << "a descendant";
    b.setParent(&c);
    EXPECT_EQ(b.parent(), &a) << "its own child; the old parent stays";
    c.setParent(&a);
    EXPECT_EQ(c.parent(), &a) << "another ancestor";
    c.setParent(nullptr);
    EXPECT_EQ(c.parent(), nullptr) << "detached";
}

}  // namespace
