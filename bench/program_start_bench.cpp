// Starting a program beside a bare posix_spawn of the same one, each until it has ended.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "brindle/platform/backend.h"

namespace {

constexpr const char* kProgram = "/bin/true";

void StartProgram(benchmark::State& state) {
    brindle::Programs& programs = brindle::BackendPrograms();
    for (auto _ : state) {
        if (programs.Start(programs.Plan("/bin/true a \"b c\""), false) <= 32)
            state.SkipWithError("not started");
        programs.WaitForAll();
    }
}

void BareSpawn(benchmark::State& state) {
    char name[] = "/bin/true";
    char first[] = "a";
    char second[] = "b c";
    char* arguments[] = {name, first, second, nullptr};
    for (auto _ : state) {
        pid_t pid = 0;
        if (posix_spawn(&pid, kProgram, nullptr, nullptr, arguments, environ) != 0)
            state.SkipWithError("not started");
        waitpid(pid, nullptr, 0);
    }
}

BENCHMARK(StartProgram)->UseRealTime();
BENCHMARK(BareSpawn)->UseRealTime();

}  // namespace
