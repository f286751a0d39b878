#include "brindle/variables/hook/variable_manager_format_command_line_hook.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "brindle/macro/command_line.h"
#include "brindle/variables/variable_manager.h"

namespace {

using Hook = VariableManagerFormatCommandLineHook;

std::string Formatted(const char* line) {
    CStringA expanded = line;
    FormatCommandLine(expanded, nullptr, nullptr, "CAP", nullptr, nullptr, 0);
    return expanded.str();
}

void StarHook(CStringA& line) {
    line = "*" + line;
}
void ThrowingHook(CStringA&) {
    throw std::runtime_error("host");
}

class CommandLineHook : public ::testing::Test {
  protected:
    CommandLineHook() {
        m_scope.addVariable(Variable("Dir", "/media"));
        m_scope.addVariable(Variable("Field", "%c"));
        m_inner.addVariable(Variable("Dir", "/inner"));
    }
    ~CommandLineHook() override {
        EXPECT_EQ(AttachPreFormatHook(nullptr), nullptr) << "a test left a hook behind";
    }
    VariableManager m_scope;
    VariableManager m_inner;
};

TEST_F(CommandLineHook, ExpandsBeforeTheFields) {
    struct Row {
        const char* label;
        const char* line;
        const char* expected;
    };
    const Row rows[] = {
        {"a reference", "{Dir}/clip.avi", "/media/clip.avi"},
        {"a value that brings a field", "{Field}", "CAP"},
        {"unknown references stay", "{Nope} %c", "{Nope} CAP"},
        {"an escaped percent inside a reference is no escape yet", "{%%}", "{%}"},
        {"no reference", "%c", "CAP"},
    };
    Hook::Install(&m_scope);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Formatted(row.line), row.expected);
    }
    Hook::Remove();
    EXPECT_EQ(Formatted("{Dir}/clip.avi"), "{Dir}/clip.avi") << "after Remove";
}

TEST_F(CommandLineHook, WithoutScopeNothingIsExpanded) {
    Hook::Install(nullptr);
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
    Hook::Remove();
}

TEST_F(CommandLineHook, RemovePutsThePreviousHookBack) {
    AttachPreFormatHook(&StarHook);
    EXPECT_EQ(Formatted("{Dir}"), "*{Dir}");
    Hook::Install(&m_scope);
    Hook::Remove();
    EXPECT_EQ(Formatted("{Dir}"), "*{Dir}");
    EXPECT_EQ(AttachPreFormatHook(nullptr), &StarHook);
}

TEST_F(CommandLineHook, ReplacesThePreviousHookInsteadOfCallingIt_Deliberate) {
    AttachPreFormatHook(&StarHook);
    Hook::Install(&m_scope);
    EXPECT_EQ(Formatted("{Dir}"), "/media");
    Hook::Remove();
    AttachPreFormatHook(nullptr);
}

TEST_F(CommandLineHook, SecondInstallForgetsTheFirstHook_Deliberate) {
    AttachPreFormatHook(&StarHook);
    Hook::Install(&m_scope);
    Hook::Install(&m_inner);
    EXPECT_EQ(Formatted("{Dir}"), "/inner");
    Hook::Remove();
    // What is attached now is the hook itself, without a scope: neither the star nor the first scope.
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
    Hook::Remove();
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
    EXPECT_NE(AttachPreFormatHook(nullptr), nullptr);
}

TEST_F(CommandLineHook, ScopesNest) {
    {
        const VariableHookScope outer(&m_scope);
        EXPECT_EQ(Formatted("{Dir}"), "/media");
        {
            const VariableHookScope inner(&m_inner);
            EXPECT_EQ(Formatted("{Dir}"), "/inner");
            {
                const VariableHookScope none(nullptr);
                EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
            }
            EXPECT_EQ(Formatted("{Dir}"), "/inner");
        }
        EXPECT_EQ(Formatted("{Dir}"), "/media");
    }
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
}

TEST_F(CommandLineHook, ScopeKeepsTheHostsHook) {
    AttachPreFormatHook(&StarHook);
    {
        const VariableHookScope outer(&m_scope);
        const VariableHookScope inner(&m_inner);
    }
    EXPECT_EQ(Formatted("{Dir}"), "*{Dir}");
    AttachPreFormatHook(nullptr);
}

TEST_F(CommandLineHook, ScopeInsideInstallAndRemove) {
    AttachPreFormatHook(&StarHook);
    Hook::Install(&m_scope);
    {
        const VariableHookScope inner(&m_inner);
        EXPECT_EQ(Formatted("{Dir}"), "/inner");
    }
    EXPECT_EQ(Formatted("{Dir}"), "/media");
    Hook::Remove();
    EXPECT_EQ(AttachPreFormatHook(nullptr), &StarHook);
}

TEST_F(CommandLineHook, InstallAndRemoveInsideScope) {
    {
        const VariableHookScope outer(&m_scope);
        Hook::Install(&m_inner);
        EXPECT_EQ(Formatted("{Dir}"), "/inner");
        Hook::Remove();
        EXPECT_EQ(Formatted("{Dir}"), "{Dir}") << "Remove clears the scope in force";
        {
            const VariableHookScope again(&m_scope);
            EXPECT_EQ(Formatted("{Dir}"), "/media");
        }
    }
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
}

TEST_F(CommandLineHook, ScopeUndoesWhatWasAttachedInside) {
    {
        const VariableHookScope outer(&m_scope);
        AttachPreFormatHook(&StarHook);
        Hook::Install(&m_inner);
        Hook::Install(&m_inner);
    }
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
}

TEST_F(CommandLineHook, ExceptionsLeaveTheOuterScopeInForce) {
    {
        const VariableHookScope outer(&m_scope);
        EXPECT_THROW(
            {
                const VariableHookScope inner(&m_inner);
                AttachPreFormatHook(&ThrowingHook);
                Formatted("x");
            },
            std::runtime_error);
        EXPECT_EQ(Formatted("{Dir}"), "/media");
    }
    EXPECT_EQ(Formatted("{Dir}"), "{Dir}");
}

}  // namespace
