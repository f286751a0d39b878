// The contract of directory watches, over the system's in a folder of its own and over the fake ones. A change that
// must not be told is followed by one that must be: what comes is then known to be all there is.
#include "brindle/platform/directory_watch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <stdlib.h>

#include "brindle/platform/fake/directory_watch_fake.h"
#include "brindle/platform/service.h"
#include "testing/watch_taker.h"

namespace brindle {
namespace {

using Completion = DirectoryCompletion;
using Lost = DirectoryCompletion::Lost;
using Wants = DirectoryWatch::Wants;
using What = DirectoryChange::What;

// A service under test and a way to change things in its world, below Root().
class World {
  public:
    virtual ~World() = default;
    virtual DirectoryWatches& Service() = 0;
    virtual std::string Root() = 0;
    virtual void AddFolder(const std::string& name) = 0;
    virtual void RemoveFolder(const std::string& name) = 0;
    virtual void Modify(const std::string& folder, const std::string& name) = 0;
    virtual void Replace(const std::string& folder, const std::string& name) = 0;
    // What no watch tells: a file is created, renamed and deleted.
    virtual void ComeAndGo(const std::string& folder) = 0;
};

class FakeWorld final : public World {
  public:
    FakeWorld() { m_watches.AddDirectory(Root()); }
    DirectoryWatches& Service() override { return m_watches; }
    std::string Root() override { return "/w"; }
    void AddFolder(const std::string& name) override { m_watches.AddDirectory(Root() + "/" + name); }
    void RemoveFolder(const std::string& name) override { m_watches.RemoveDirectory(Root() + "/" + name); }
    void Modify(const std::string& folder, const std::string& name) override {
        m_watches.Modify(Root() + "/" + folder, name);
    }
    void Replace(const std::string& folder, const std::string& name) override {
        m_watches.Change(Root() + "/" + folder, {{What::kReplaced, name}});
    }
    void ComeAndGo(const std::string&) override {}

  private:
    FakeDirectoryWatches m_watches;
};

class SystemWorld final : public World {
  public:
    SystemWorld() {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_watch_XXXXXX";
        m_root = ::mkdtemp(pattern.data());
    }
    ~SystemWorld() override { std::filesystem::remove_all(m_root); }
    DirectoryWatches& Service() override { return BackendDirectoryWatches(); }
    std::string Root() override { return m_root; }
    void AddFolder(const std::string& name) override { std::filesystem::create_directories(m_root / name); }
    void RemoveFolder(const std::string& name) override { std::filesystem::remove_all(m_root / name); }
    void Modify(const std::string& folder, const std::string& name) override {
        std::ofstream(m_root / folder / name, std::ios::app) << "x";
    }
    void Replace(const std::string& folder, const std::string& name) override {
        std::ofstream(m_root / "new") << "x";
        std::filesystem::rename(m_root / "new", m_root / folder / name);
    }
    void ComeAndGo(const std::string& folder) override {
        const std::ofstream created(m_root / folder / "created");
        std::filesystem::rename(m_root / folder / "created", m_root / folder / "renamed");
        std::filesystem::permissions(m_root / folder / "renamed", std::filesystem::perms::owner_all);
        std::filesystem::remove(m_root / folder / "renamed");
        std::filesystem::create_directory(m_root / folder / "sub");
        std::ofstream(m_root / folder / "sub" / "in") << "x";
    }

  private:
    std::filesystem::path m_root;
};

class DirectoryWatchContract : public ::testing::TestWithParam<bool> {
  protected:
    DirectoryWatchContract() : m_world(MakeWorld()) {
        Result result;
        m_taker = std::make_unique<testing::WatchTaker>(m_world->Service().Open(result));
        EXPECT_TRUE(result.ok()) << result.text;
        m_world->AddFolder("a");
        m_world->AddFolder("b");
    }
    World& world() { return *m_world; }
    DirectoryWatch& watch() { return m_taker->Watch(); }
    void Add(std::uint64_t number, const std::string& folder, Wants wants = Wants::kModified) {
        const Result result = watch().Add(number, world().Root() + "/" + folder, wants);
        EXPECT_TRUE(result.ok()) << result.text;
    }
    // "1:name name" or "1 lost" of the next completion.
    std::string Next() {
        const std::optional<Completion> completion = m_taker->Next();
        if (!completion) return "none came";
        std::string text = std::to_string(completion->directory);
        if (completion->lost == Lost::kDirectory) return text + " lost";
        if (completion->lost == Lost::kOverflow) return text + " overflow";
        text += ":";
        for (const DirectoryChange& change : completion->changes)
            text += (change.what == What::kReplaced ? " replaced " : " ") + change.name;
        return text;
    }

  private:
    static std::unique_ptr<World> MakeWorld() {
        if (GetParam()) return std::make_unique<SystemWorld>();
        return std::make_unique<FakeWorld>();
    }
    std::unique_ptr<World> m_world;
    std::unique_ptr<testing::WatchTaker> m_taker;
};

INSTANTIATE_TEST_SUITE_P(Watches, DirectoryWatchContract, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "System" : "Fake"; });

TEST_P(DirectoryWatchContract, TellsWhatWasModifiedWhere) {
    Add(1, "a");
    Add(2, "b");
    world().Modify("a", "x");
    EXPECT_EQ(Next(), "1: x");
    world().Modify("b", "Y.xml");
    EXPECT_EQ(Next(), "2: Y.xml");
    world().Modify("a", "z");
    EXPECT_EQ(Next(), "1: z");
}

TEST_P(DirectoryWatchContract, OnlyModificationCounts) {
    Add(1, "a");
    world().ComeAndGo("a");
    world().Replace("a", "x");
    world().Modify("a", "y");
    EXPECT_EQ(Next(), "1: y");
}

TEST_P(DirectoryWatchContract, ReplacementCountsWhenWanted) {
    Add(1, "a", Wants::kModifiedAndReplaced);
    world().ComeAndGo("b");
    world().Replace("a", "x");
    EXPECT_EQ(Next(), "1: replaced x");
    world().Modify("a", "x");
    EXPECT_EQ(Next(), "1: x");
}

TEST_P(DirectoryWatchContract, TwoNumbersOfOneDirectory) {
    Add(1, "a");
    Add(2, "a", Wants::kModifiedAndReplaced);
    world().Modify("a", "x");
    std::string both = Next();
    both += Next();
    EXPECT_TRUE(both == "1: x2: x" || both == "2: x1: x") << both;
    world().Replace("a", "x");
    EXPECT_EQ(Next(), "2: replaced x") << "the first does not want it";
    watch().Remove(2);
    world().Modify("a", "y");
    EXPECT_EQ(Next(), "1: y");
}

TEST_P(DirectoryWatchContract, RemovedDirectoriesAreNotTold) {
    Add(1, "a");
    Add(2, "b");
    watch().Remove(1);
    watch().Remove(1);
    watch().Remove(99);
    world().Modify("a", "x");
    world().Modify("b", "y");
    EXPECT_EQ(Next(), "2: y");
    Add(1, "a");
    world().Modify("a", "z");
    EXPECT_EQ(Next(), "1: z") << "a number may be used again";
}

TEST_P(DirectoryWatchContract, MissingDirectoriesAreRefused) {
    const Result result = watch().Add(1, world().Root() + "/none", Wants::kModified);
    EXPECT_EQ(result.code, ErrorCode::kNotFound);
    EXPECT_NE(result.text.find("none"), std::string::npos) << result.text;
    Add(1, "a");
    world().Modify("a", "x");
    EXPECT_EQ(Next(), "1: x") << "the number was not taken";
}

TEST_P(DirectoryWatchContract, ADirectoryThatGoesAndComesAgain) {
    Add(1, "a");
    Add(2, "b");
    for (int round = 0; round < 3; ++round) {
        SCOPED_TRACE(round);
        world().RemoveFolder("a");
        EXPECT_EQ(Next(), "1 lost");
        world().Modify("b", "x");
        EXPECT_EQ(Next(), "2: x");
        world().AddFolder("a");
        EXPECT_EQ(Next(), "1 lost");
        world().Modify("a", "y");
        EXPECT_EQ(Next(), "1: y");
    }
    world().RemoveFolder("a");
    EXPECT_EQ(Next(), "1 lost");
    watch().Remove(1);
    world().AddFolder("a");
    world().Modify("a", "z");
    world().Modify("b", "z");
    EXPECT_EQ(Next(), "2: z") << "nobody waits for it any more";
}

TEST_P(DirectoryWatchContract, EachWatchHasItsOwn) {
    Result result;
    testing::WatchTaker other(world().Service().Open(result));
    ASSERT_TRUE(other.Watch().Add(1, world().Root() + "/a", Wants::kModified).ok());
    Add(7, "a");
    world().Modify("a", "x");
    EXPECT_EQ(Next(), "7: x");
    EXPECT_EQ(other.Next()->directory, 1u);
}

TEST_P(DirectoryWatchContract, CloseEndsTheWait) {
    Result result;
    const std::unique_ptr<DirectoryWatch> watch = world().Service().Open(result);
    std::thread closing([&] { watch->Close(); });
    DirectoryCompletion completion;
    EXPECT_FALSE(watch->Wait(completion));
    closing.join();
    EXPECT_FALSE(watch->Wait(completion)) << "every later one too";
    ASSERT_TRUE(watch->Add(1, world().Root() + "/a", Wants::kModified).ok());
    world().Modify("a", "x");
    EXPECT_FALSE(watch->Wait(completion));
}

TEST(DirectoryWatch, SlotFallsBackToTheBackend) {
    FakeDirectoryWatches fake;
    EXPECT_EQ(&CurrentDirectoryWatches(), &BackendDirectoryWatches());
    {
        const ScopedService<DirectoryWatches> installed(&SetDirectoryWatches, fake);
        EXPECT_EQ(&CurrentDirectoryWatches(), &fake);
    }
    EXPECT_EQ(&CurrentDirectoryWatches(), &BackendDirectoryWatches());
}

TEST(DirectoryWatch, FakeOverflowsTogetherAndFails) {
    FakeDirectoryWatches fake;
    fake.AddDirectory("/a");
    Result result;
    testing::WatchTaker taker(fake.Open(result));
    ASSERT_TRUE(taker.Watch().Add(1, "/a", Wants::kModified).ok());
    fake.Change("/a", {{What::kModified, "x"}, {What::kModified, "y"}, {What::kModified, "x"}});
    EXPECT_EQ(taker.Next()->changes.size(), 2u);
    fake.Overflow();
    EXPECT_EQ(taker.Next()->lost, Lost::kOverflow);
    fake.WaitUntilTaken();
    fake.FailOpening(true);
    EXPECT_EQ(fake.Open(result), nullptr);
    EXPECT_EQ(result.code, ErrorCode::kLimit);
}

}  // namespace
}  // namespace brindle
