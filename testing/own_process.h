// Cases that end the process they run in, each in a process of its own: main's end, exit, and what static storage does
// then. A case must end by exit, with what it required seen.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

namespace brindle::testing {

// Ends the process as one that saw something wrong, and says in which line of the case.
inline void Require(bool condition, int line = __builtin_LINE()) {
    constexpr int kWrong = 9;
    if (condition) return;
    std::fprintf(stderr, "line %d\n", line);
    _exit(kWrong);
}

// Runs a function when it is destroyed: as a static of its own, after everything made later is gone.
class AtEnd {
  public:
    explicit AtEnd(std::function<void()> work) : m_work(std::move(work)) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { m_work(); }

  private:
    std::function<void()> m_work;
};

struct ProcessCase {
    const char* label;
    void (*run)();
};

inline void ExpectGoodEnds(const std::vector<ProcessCase>& cases) {
    for (const ProcessCase& each : cases) {
        SCOPED_TRACE(each.label);
        std::fflush(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            each.run();
            std::exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
}

}  // namespace brindle::testing
