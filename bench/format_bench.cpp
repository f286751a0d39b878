// Command-line formatting beside fmt's named arguments doing the same work, and lines without fields beside a
// memchr and a copy. All of them read the same clock and break it down to local time where a date is wanted.
#include <benchmark/benchmark.h>
#include <fmt/args.h>
#include <fmt/format.h>

#include <cstring>
#include <string>

#include "brindle/address/full_address.h"
#include "brindle/macro/command_line.h"
#include "brindle/platform/clock.h"

namespace {

constexpr FullAddress_t kAddress = {0x0012, 0x03, 0x04};
constexpr const char* kPath = "C:\\Schematics\\Studio";
constexpr const char* kCaption = "Camera 1 tally";
constexpr const char* kText = "on air";
constexpr int kStatus = 2;

// 120 characters, six fields, one date token.
const char kLine[] =
    "recorder.exe /unit:%a /cfg:%p\\unit.ini /title:\"%c\" /note:\"%t\" /state:%i /colour:%s /hour:%H% "
    "/mode:auto "
    "/quiet /wait:15";
const char kFmtLine[] =
    "recorder.exe /unit:{a} /cfg:{p}\\unit.ini /title:\"{c}\" /note:\"{t}\" /state:{i} /colour:{s} /hour:{H} "
    "/mode:auto /quiet /wait:15";

void FormatSixFieldsAndADate(benchmark::State& state) {
    const CStringA line = kLine;
    for (auto _ : state) {
        CStringA expanded = line;
        FormatCommandLine(expanded, &kAddress, kPath, kCaption, kText, nullptr, kStatus);
        benchmark::DoNotOptimize(expanded);
    }
}

void FmtNamedArguments(benchmark::State& state) {
    const std::string line = kFmtLine;
    for (auto _ : state) {
        brindle::LocalTime now;
        brindle::CurrentClock().ToLocalTime(brindle::UnixSeconds(), now);
        const std::string address =
            fmt::format("{:04X}:{:02X}:{:02X}", kAddress.net, kAddress.unit, kAddress.port);
        const std::string hour = fmt::format("{:02}", now.hour);
        std::string expanded = fmt::format(
            fmt::runtime(line), fmt::arg("a", address), fmt::arg("p", kPath), fmt::arg("c", kCaption),
            fmt::arg("t", kText), fmt::arg("i", kStatus), fmt::arg("s", "Yellow"), fmt::arg("H", hour));
        benchmark::DoNotOptimize(expanded);
    }
}

const std::string& PlainLine() {
    static const std::string line =
        "recorder.exe /unit:1 /cfg:unit.ini /title:\"Camera\" /note:\"on air\" /state:2 "
        "/colour:Yellow /hour:12 /mode:auto /quiet";
    return line;
}

void FormatWithoutFields(benchmark::State& state) {
    const CStringA line = PlainLine();
    for (auto _ : state) {
        CStringA expanded = line;
        FormatCommandLine(expanded, &kAddress, kPath, kCaption, kText, nullptr, kStatus);
        benchmark::DoNotOptimize(expanded);
    }
}

void MemchrAndCopy(benchmark::State& state) {
    const std::string& line = PlainLine();
    for (auto _ : state) {
        std::string copy = line;
        benchmark::DoNotOptimize(copy);
        benchmark::DoNotOptimize(std::memchr(copy.data(), '%', copy.size()));
    }
}

BENCHMARK(FormatSixFieldsAndADate);
BENCHMARK(FmtNamedArguments);
BENCHMARK(FormatWithoutFields);
BENCHMARK(MemchrAndCopy);

}  // namespace
