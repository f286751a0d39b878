// Variable references beside the bare limit: copying the text and one hash look-up for each reference. A text of
// 100 characters with six references, one of them nested in another.
#include <benchmark/benchmark.h>

#include <string>
#include <unordered_map>
#include <vector>

#include "brindle/variables/variable_manager.h"

namespace {

const char kText[] =
    "play {Dir}/{Name}_{Take}.mov on {Server} from {Port{Slot}} with the usual fade and hold at the last one";
const char* const kNames[] = {"Dir", "Name", "Take", "Server", "Slot", "Port2"};
const char* const kValues[] = {"/media/clips", "evening_news", "03", "playout-1", "2", "sdi-4"};

// What the scope holds besides the names that are used.
constexpr int kOrdinary = 20;
constexpr int kLarge = 1000;

void ResolveBeside(benchmark::State& state, int others) {
    VariableManager scope;
    for (std::size_t i = 0; i < std::size(kNames); ++i) scope.addVariable(Variable(kNames[i], kValues[i]));
    for (int i = 0; i < others; ++i) scope.addVariable(Variable("Other" + std::to_string(i), "value"));
    const CStringA text = kText;
    for (auto _ : state) {
        CStringA resolved = text;
        scope.resolve(resolved);
        benchmark::DoNotOptimize(resolved);
    }
}

void CopyAndLookUpBeside(benchmark::State& state, int others) {
    std::unordered_map<std::string, std::string> variables;
    for (std::size_t i = 0; i < std::size(kNames); ++i) variables[kNames[i]] = kValues[i];
    for (int i = 0; i < others; ++i) variables["Other" + std::to_string(i)] = "value";
    const std::string text = kText;
    const std::vector<std::string> names(std::begin(kNames), std::end(kNames));
    for (auto _ : state) {
        std::string copy = text;
        benchmark::DoNotOptimize(copy);
        for (const std::string& name : names) benchmark::DoNotOptimize(variables.find(name));
    }
}

void Resolve(benchmark::State& state) {
    ResolveBeside(state, kOrdinary);
}
void CopyAndSixHashLookups(benchmark::State& state) {
    CopyAndLookUpBeside(state, kOrdinary);
}
void ResolveInLargeScope(benchmark::State& state) {
    ResolveBeside(state, kLarge);
}
void CopyAndSixHashLookupsInLargeScope(benchmark::State& state) {
    CopyAndLookUpBeside(state, kLarge);
}

BENCHMARK(Resolve);
BENCHMARK(CopyAndSixHashLookups);
BENCHMARK(ResolveInLargeScope);
BENCHMARK(CopyAndSixHashLookupsInLargeScope);

}  // namespace
