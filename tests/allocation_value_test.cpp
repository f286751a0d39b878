// Variables, skins, rules and command lines when memory runs out: each is afterwards what it was before the call, or
// what the call makes of it.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "brindle/expressions/prepared_rule.h"
#include "brindle/expressions/solver.h"
#include "brindle/macro/brindle_data.h"
#include "brindle/macro/command_line.h"
#include "brindle/macro/ini_string.h"
#include "brindle/platform/files.h"
#include "brindle/skin/ov_skin.h"
#include "brindle/variables/hook/variable_manager_format_command_line_hook.h"
#include "brindle/variables/variable_manager.h"
#include "testing/failing_allocation.h"

namespace {

using namespace brindle::testing;

const CStringA kLong = "a text that is longer than what a string holds without memory of its own";
const CStringA kOther = "another text, also too long to lie inside the object that stands for it";

// A scope of several variables, so that its index grows, and a change of it.
VariableManager Scope() {
    VariableManager scope;
    for (const char* name : {"alpha", "beta", "gamma", "delta"}) scope.addVariable(Variable(name, kLong));
    return scope;
}

// The variables as the map and as the index know them must be the same.
void ExpectWhole(const VariableManager& scope) {
    for (const Variable& variable : scope.getVariables()) {
        CStringA value;
        EXPECT_TRUE(scope.getValue(variable.name(), value)) << variable.name().GetString();
        EXPECT_EQ(value, variable.value());
    }
    VariableManager copy(scope);
    copy.addVariable(Variable("zeta", "last"));
    CStringA text = "{zeta}";
    EXPECT_TRUE(copy.resolve(text));
    EXPECT_EQ(text, "last");
}

void SweepScope(const char* label, std::uint64_t least, const std::function<void(VariableManager&)>& change) {
    const std::string before = Scope().toXML().str();
    VariableManager changed = Scope();
    change(changed);
    const std::string after = changed.toXML().str();
    FailEveryAllocation(label, least, [&] {
        const auto scope = std::make_shared<VariableManager>(Scope());
        const auto check = [scope, &before, &after, &change](bool done) {
            EXPECT_EQ(scope->toXML().str(), done ? after : before);
            ExpectWhole(*scope);
            change(*scope);
            EXPECT_EQ(scope->toXML().str(), after);
        };
        return Attempt{[scope, &change] { change(*scope); }, check};
    });
}

TEST(ValueAllocationTest, Variables) {
    VariableManager other;
    for (const char* name : {"one", "two", "three"}) other.addVariable(Variable(name, kOther));
    const CStringA xml = other.toXML();
    const CStringA path = ::testing::TempDir() + "allocation_variables.xml";
    ASSERT_TRUE(other.save(path));
    SweepScope("add a variable", 3, [](auto& scope) { scope.addVariable(Variable("new", kLong)); });
    SweepScope("give a value", 1, [](auto& scope) { scope.addVariable(Variable("beta", kOther + kOther)); });
    SweepScope("remove", 0, [](auto& scope) { scope.removeVariable("beta"); });
    SweepScope("assign", 5, [&](auto& scope) { scope = other; });
    SweepScope("copy from", 5, [&](auto& scope) { scope.copyFrom(&other); });
    SweepScope("from XML", 10, [&](auto& scope) { EXPECT_TRUE(scope.fromXML(xml)); });
    SweepScope("load", 10, [&](auto& scope) { EXPECT_TRUE(scope.load(path)); });
    SweepScope("to XML", 5, [&](auto& scope) { static_cast<void>(scope.toXML()); });
}

TEST(ValueAllocationTest, Resolving) {
    VariableManager outer;
    outer.addVariable(Variable("outer", kOther));
    FailEveryAllocation("resolve", 2, [&] {
        const auto scope = std::make_shared<VariableManager>(Scope());
        scope->setParent(&outer);
        const CStringA before = "{alpha} {outer} {{{{{{{{{{{{{{{{{{{{beta}}}}}}}}}}}}}}}}}}}}";
        const auto text = std::make_shared<CStringA>(before);
        CStringA after = before;
        scope->resolve(after);
        const auto check = [=](bool done) {
            // A scope that has answered leaves the rest to its parent.
            CStringA here = before;
            Scope().resolve(here);
            EXPECT_TRUE(*text == after || (!done && (*text == before || *text == here))) << *text;
        };
        return Attempt{[scope, text] { scope->resolve(*text); }, check};
    });
}

void SweepSkin(const char* label, std::uint64_t least, const std::function<void(OVSkin&)>& change) {
    OVSkin first;
    first.SetExactProp("default", "button", "caption", kLong);
    OVSkin changed = first;
    change(changed);
    const std::string before = OVSkin(first).GetXML().str();  // the copies below have no document yet
    const std::string after = changed.GetXML().str();
    FailEveryAllocation(label, least, [&] {
        const auto skin = std::make_shared<OVSkin>(first);
        const auto check = [skin, &before, &after, &change](bool done) {
            EXPECT_EQ(skin->GetXML().str(), done ? after : before);
            change(*skin);
            EXPECT_EQ(skin->GetXML().str(), after);
        };
        return Attempt{[skin, &change] { change(*skin); }, check};
    });
}

TEST(ValueAllocationTest, Skins) {
    const CStringA xml =
        "<skin><default><list a='1' b='2'/></default><pressed><button c='" + kLong + "'/></pressed></skin>";
    SweepSkin("a new mode", 4, [](OVSkin& skin) { skin.SetExactProp("pressed", "list", "caption", kLong); });
    SweepSkin("a new element", 3, [](OVSkin& skin) { skin.SetExactProp(0, "list", "caption", kLong); });
    SweepSkin("a new value", 1,
              [](OVSkin& skin) { skin.SetExactProp(0, "button", "caption", kOther + kOther); });
    SweepSkin("from a text", 10, [&](OVSkin& skin) { EXPECT_TRUE(skin.LoadFromStr(xml)); });
    SweepSkin("the built-in one", 10, [](OVSkin& skin) { EXPECT_TRUE(skin.LoadFromFile("no such file")); });
    SweepSkin("as a document", 5, [](OVSkin& skin) { EXPECT_FALSE(skin.GetXML().IsEmpty()); });
}

class SuppliedValues final : public CSolverData {
  public:
    bool Lookup(const CStringA& header, const CAddressOv*, CStringA& value) const override {
        value = header == "NAME" ? kLong : CStringA("12");
        return header != "UNKNOWN";
    }
};

TEST(ValueAllocationTest, Rules) {
    const char* const rules[] = {
        "NAME = \"a text that is longer than%\" & LEVEL + 3 * (STATUS - 1) > 10",
        "0001:02:03,LEVEL > 10 | UNKNOWN = \"x\"",
        "NAME = \"%t[e]xt%that%\"",
    };
    const SuppliedValues data;
    for (const char* rule : rules) {
        CCalculator::Literal expected;
        ASSERT_TRUE(CSolver().Solve(rule, data, false, expected)) << rule;
        FailEveryAllocation(rule, 5, [&, rule] {
            const auto result = std::make_shared<CCalculator::Literal>();
            const auto solve = [&data, rule, result] {
                return CSolver().Solve(rule, data, false, *result) &&
                       brindle::PreparedRule(rule).Solve(data, *result);
            };
            const auto solved = std::make_shared<bool>(false);
            const auto check = [=, &expected](bool done) {
                const std::string untouched = CCalculator::Literal().AsString();
                if (done && *solved) {
                    EXPECT_EQ(result->AsString(), expected.AsString());
                }
                if (!done) {
                    EXPECT_TRUE(result->AsString() == expected.AsString() || result->AsString() == untouched);
                }
                EXPECT_TRUE(solve());
                EXPECT_EQ(result->AsString(), expected.AsString());
            };
            return Attempt{[solve, solved] { *solved = solve(); }, check};
        });
    }
}

class AnsweringData final : public IBrindleData {
  public:
    int GetAddressStatus(const FullAddress_t*) override { return 3; }
    CStringA GetHashFieldValue(const FullAddress_t*, const char*) override { return kOther; }
    void WriteCommandLog(const char*) override {}
    int SelectActions(CCommandBehaviourList&, int, brindle::eHostType) override { return 0; }
};

void Format(CStringA& line) {
    FormatCommandLine(line, nullptr, "C:\\a\\path", "a caption", "a text", "help", 1);
}

TEST(ValueAllocationTest, CommandLines) {
    AnsweringData data;
    RegisterIBrindleData(&data);
    const VariableManager scope = Scope();
    const VariableHookScope hook(&scope);
    const CStringA before = ".{alpha} %c %t #field# %%yyyy%%";
    CStringA after = before;
    Format(after);
    CStringA resolved = before;
    scope.resolve(resolved);
    FailEveryAllocation("format", 4, [&] {
        const auto line = std::make_shared<CStringA>(before);
        const auto check = [line, &before, &resolved, &after](bool done) {
            if (done) {
                EXPECT_EQ(*line, after);
                return;
            }
            // What the last complete stage left: the hook, the fields, the path, the values.
            const bool untouched = *line == before || *line == resolved;
            EXPECT_TRUE(untouched || line->str().find(" a caption a text #field# ") != std::string::npos)
                << *line;
        };
        return Attempt{[line] { Format(*line); }, check};
    });
    RegisterIBrindleData(nullptr);
}

TEST(ValueAllocationTest, IniValues) {
    const std::string file = ::testing::TempDir() + "allocation.ini";
    ASSERT_TRUE(brindle::CurrentFiles().WriteWhole(file, "[section]\nkey=" + kOther.str() + "\n").ok());
    FailEveryAllocation("read an INI value", 2, [&] {
        const auto value = std::make_shared<CStringA>("before");
        const auto read = [value, &file] { GetIniString("section", "key", kLong, *value, file.c_str(), 16); };
        const auto check = [value, read](bool done) {
            if (done) {
                EXPECT_TRUE(*value == kOther || *value == kLong) << *value << ": neither it nor the default";
            } else {
                EXPECT_EQ(*value, "before");
            }
            read();
            EXPECT_EQ(*value, kOther);
        };
        return Attempt{read, check};
    });
}

}  // namespace
