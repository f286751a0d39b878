// The environment's contract, over the system's service and the fake one; and what the backend says of itself.
#include "brindle/platform/environment.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "brindle/platform/backend_info.h"
#include "brindle/platform/fake/environment_fake.h"
#include "brindle/platform/service.h"
#include "testing/vectors.h"

namespace brindle {
namespace {

constexpr const char* kName = "BRINDLE_ENVIRONMENT_TEST";

class EnvironmentContract : public ::testing::TestWithParam<bool> {
  protected:
    ~EnvironmentContract() override { ::unsetenv(kName); }
    bool IsSystem() const { return GetParam(); }
    Environment& service() { return IsSystem() ? BackendEnvironment() : static_cast<Environment&>(m_fake); }
    void Set(const char* value) { IsSystem() ? void(::setenv(kName, value, 1)) : m_fake.Set(kName, value); }
    void Unset() { IsSystem() ? void(::unsetenv(kName)) : m_fake.Unset(kName); }

  private:
    FakeEnvironment m_fake;
};

INSTANTIATE_TEST_SUITE_P(Environments, EnvironmentContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "System" : "Fake"; });

TEST_P(EnvironmentContract, GivesTheValueAsItIs) {
    for (const char* value : {"x", "", "a=b", " ", "\xE9\xFF"}) {
        SCOPED_TRACE(value);
        Set(value);
        std::string read = "before";
        EXPECT_TRUE(service().Variable(kName, read));
        EXPECT_EQ(read, value);
    }
}

TEST_P(EnvironmentContract, LeavesTheOutputWhenNotSet) {
    Unset();
    const std::string embeddedZero("PATH\0x", 6);
    for (const std::string& name : {std::string(kName), std::string(), std::string("A=B"), embeddedZero}) {
        SCOPED_TRACE(name);
        std::string read = "before";
        EXPECT_FALSE(service().Variable(name, read));
        EXPECT_EQ(read, "before");
    }
}

TEST_P(EnvironmentContract, LetterCaseDoesNotMatterWhereAskedSo) {
    Set("exact");
    std::string read = "before";
    EXPECT_TRUE(service().VariableNoCase("brindle_Environment_TEST", read));
    EXPECT_EQ(read, "exact");
    EXPECT_TRUE(service().VariableNoCase(kName, read));
    EXPECT_EQ(read, "exact");
    read = "before";
    EXPECT_FALSE(service().VariableNoCase("BRINDLE_ENVIRONMENT_TES", read));
    EXPECT_FALSE(service().VariableNoCase("", read));
    EXPECT_FALSE(service().VariableNoCase("brindle_Environment_TEST=", read));
    EXPECT_EQ(read, "before");
}

TEST(Environment, OfSeveralNamesTheExactOneElseTheSmallestCounts) {
    FakeEnvironment fake;
    fake.Set("name", "lower");
    fake.Set("Name", "mixed");
    std::string read;
    EXPECT_TRUE(fake.VariableNoCase("name", read));
    EXPECT_EQ(read, "lower");
    EXPECT_TRUE(fake.VariableNoCase("NAME", read));
    EXPECT_EQ(read, "mixed");
    ::setenv("brindle_case_a", "lower", 1);
    ::setenv("Brindle_Case_A", "mixed", 1);
    EXPECT_TRUE(BackendEnvironment().VariableNoCase("brindle_case_a", read));
    EXPECT_EQ(read, "lower");
    EXPECT_TRUE(BackendEnvironment().VariableNoCase("BRINDLE_CASE_A", read));
    EXPECT_EQ(read, "mixed");
    ::unsetenv("brindle_case_a");
    ::unsetenv("Brindle_Case_A");
}

TEST(ExpandEnvironment, Rows) {
    FakeEnvironment fake;
    const ScopedService<Environment> installed(&SetEnvironment, fake);
    fake.Set("A", "alpha");
    fake.Set("P", "%A%");
    fake.Set("E", "");
    fake.Set("H", "Caf\xC3\xA9");
    struct Row {
        const char* label;
        const char* text;
        std::size_t limit;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"nothing to expand", "plain", 100, "plain"},
        {"empty", "", 100, ""},
        {"a variable", "C:\\%A%\\x", 100, "C:\\alpha\\x"},
        {"in other case", "%a%", 100, "alpha"},
        {"two", "%A%%A%", 100, "alphaalpha"},
        {"set to nothing", "[%E%]", 100, "[]"},
        {"values are not expanded again", "%P%", 100, "%A%"},
        {"not set", "%X%", 100, "%X%"},
        {"the end of one not set opens no other", "%X%A%", 100, "%X%A%"},
        {"percent alone", "100%", 100, "100%"},
        {"two percents", "%%A%%", 100, "%%A%%"},
        {"letters of the code page", "%H%\xE4", 100, "Caf\xE9\xE4"},
        {"exactly the limit", "%A%x", 6, "alphax"},
        {"cut", "%A%x", 5, "alpha"},
        {"cut in a value", "%A%", 2, "al"},
        {"cut in plain text", "plain", 3, "pla"},
        {"nothing allowed", "%A%", 0, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(ExpandEnvironment(row.text, row.limit), row.expected);
    }
}

TEST(ExpandEnvironment, AsRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "expandenv.json");
    FakeEnvironment fake;
    const ScopedService<Environment> installed(&SetEnvironment, fake);
    for (const auto& [name, value] : vectors["environment"].items()) fake.Set(name, value.get<std::string>());
    int compared = 0;
    for (const auto& row : vectors["cases"]) {
        if (!row["fits"].get<bool>()) continue;
        SCOPED_TRACE(row["note"].get<std::string>());
        const std::size_t limit = row["size"].get<std::size_t>() - 1;
        EXPECT_EQ(ExpandEnvironment(testing::BytesOf(row["source"]), limit), testing::BytesOf(row["text"]));
        ++compared;
    }
    EXPECT_GE(compared, 45);
}

TEST(Environment, IsTheBackendsUntilAnotherIsInstalled) {
    EXPECT_EQ(&CurrentEnvironment(), &BackendEnvironment());
    FakeEnvironment fake;
    {
        const ScopedService<Environment> installed(&SetEnvironment, fake);
        EXPECT_EQ(&CurrentEnvironment(), &fake);
    }
    EXPECT_EQ(&CurrentEnvironment(), &BackendEnvironment());
}

// Standard input is put in place of another stream while the object lives.
class StandardInput {
  public:
    explicit StandardInput(int stream) : m_before(::dup(STDIN_FILENO)) {
        EXPECT_EQ(stream < 0 ? ::close(STDIN_FILENO) : ::dup2(stream, STDIN_FILENO), 0);
    }
    StandardInput(const StandardInput&) = delete;
    StandardInput& operator=(const StandardInput&) = delete;
    ~StandardInput() {
        m_before < 0 ? ::close(STDIN_FILENO) : ::dup2(m_before, STDIN_FILENO);
        ::close(m_before);
    }

  private:
    int m_before;
};

TEST(Environment, KnowsWhatIsNoTerminal) {
    Environment& environment = BackendEnvironment();
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    {
        const StandardInput none(pipe[0]);
        EXPECT_FALSE(environment.IsTerminal(StandardStream::kInput));
    }
    {
        const StandardInput closed(-1);
        EXPECT_FALSE(environment.IsTerminal(StandardStream::kInput));
    }
    ::close(pipe[0]);
    ::close(pipe[1]);
    EXPECT_EQ(environment.IsTerminal(StandardStream::kOutput), ::isatty(STDOUT_FILENO) == 1);
    EXPECT_EQ(environment.IsTerminal(StandardStream::kError), ::isatty(STDERR_FILENO) == 1);
}

TEST(Environment, KnowsATerminalThatIsThere) {
    const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
    // A container may have no /dev/ptmx, and nothing else is a terminal.
    if (terminal < 0) GTEST_SKIP() << "this system gives no terminal";
    {
        const StandardInput there(terminal);
        EXPECT_TRUE(BackendEnvironment().IsTerminal(StandardStream::kInput));
    }
    ::close(terminal);
}

TEST(BackendInfo, NamesEveryServiceAndTheLoadedLibraries) {
    const BackendInfo info = DescribeBackend();
    EXPECT_FALSE(info.name.empty());
    std::vector<std::string> services;
    for (const BackendPart& part : info.parts) {
        services.push_back(part.service);
        EXPECT_FALSE(part.library.empty()) << part.service;
        EXPECT_THAT(part.version, ::testing::MatchesRegex("[0-9]+\\.[0-9]+.*")) << part.service;
    }
    EXPECT_THAT(services,
                ::testing::ElementsAre("clock", "code page", "directory watch", "files", "SNMP", "XML"));
}

}  // namespace
}  // namespace brindle
