// The environment's contract, over the system's service and the fake one; and what the backend says of itself.
#include "brindle/platform/environment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include "brindle/platform/backend_info.h"
#include "brindle/platform/fake/environment_fake.h"
#include "brindle/platform/service.h"

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

TEST(Environment, IsTheBackendsUntilAnotherIsInstalled) {
    EXPECT_EQ(&CurrentEnvironment(), &BackendEnvironment());
    FakeEnvironment fake;
    {
        const ScopedService<Environment> installed(&SetEnvironment, fake);
        EXPECT_EQ(&CurrentEnvironment(), &fake);
    }
    EXPECT_EQ(&CurrentEnvironment(), &BackendEnvironment());
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
    EXPECT_THAT(services, ::testing::ElementsAre("clock", "code page", "files", "XML"));
}

}  // namespace
}  // namespace brindle
