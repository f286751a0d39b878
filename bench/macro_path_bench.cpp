// Search paths: expanding three nested macros with two candidates from an INI file of 200 keys, beside reading and
// scanning that file once. The file has not changed for some seconds, as in a running station; with the argument 0 it
// has just been written, and is read for each look-up.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "brindle/macro/substitute_path.h"

namespace {

class Station {
  public:
    Station() {
        std::string pattern = std::filesystem::temp_directory_path() / "brindle_bench_XXXXXX";
        m_folder = mkdtemp(pattern.data());
        std::filesystem::create_directory(m_folder + "/b");
        std::ofstream(m_folder + "/b/x.dll") << "x";
        WriteIni();
    }
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;
    ~Station() { std::filesystem::remove_all(m_folder); }

    void WriteIni() const {
        std::ofstream ini(Ini());
        ini << "; station\r\n[SearchPath]\r\n";
        for (int i = 0; i < 197; ++i) ini << "KEY" << i << "=C:\\Station\\Folder" << i << ";D:\\Common\r\n";
        ini << "LIB=$MID$\r\nMID=$BASE$\r\nBASE=" << m_folder << "/a;" << m_folder << "/b\r\n";
    }
    std::string Ini() const { return m_folder + "/macros.ini"; }

    // Its file has not changed for some seconds.
    static const Station& Settled() {
        static const Station station;
        constexpr timespec kUntilSettled = {5, 0};
        [[maybe_unused]] static const int waited = nanosleep(&kUntilSettled, nullptr);
        return station;
    }
    // Another one, since the benchmarks run in any order: its file is written anew by whoever uses it.
    static const Station& Fresh() {
        static const Station station;
        station.WriteIni();
        return station;
    }

  private:
    std::string m_folder;
};

void ExpandThreeMacros(benchmark::State& state) {
    const Station& station = state.range(0) == 0 ? Station::Fresh() : Station::Settled();
    SetSearchPathIniFile(station.Ini().c_str());
    char out[4096];
    for (auto _ : state) {
        GetSubstitutePath("$LIB$/x.dll", out, sizeof out, 1, nullptr, "", "", "", "", 0, nullptr, true);
        benchmark::DoNotOptimize(out);
    }
    if (!std::strstr(out, "/b/x.dll")) state.SkipWithError("not expanded");
}

// Opens, reads and closes the file and looks at each of its lines for a key and a "=".
void ReadAndScan(benchmark::State& state) {
    const std::string path = Station::Settled().Ini();
    for (auto _ : state) {
        const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status {};
        fstat(fd, &status);
        std::string text(static_cast<std::size_t>(status.st_size), '\0');
        benchmark::DoNotOptimize(read(fd, text.data(), text.size()));
        close(fd);
        std::size_t found = 0;
        for (const char* line = text.c_str(); line;) {
            const char* end = std::strchr(line, '\n');
            if (strncasecmp(line, "base=", 5) == 0) ++found;
            const std::size_t length = end ? static_cast<std::size_t>(end - line) : std::strlen(line);
            benchmark::DoNotOptimize(std::memchr(line, '=', length));
            line = end ? end + 1 : nullptr;
        }
        benchmark::DoNotOptimize(found);
    }
}

BENCHMARK(ExpandThreeMacros)->Arg(1);
BENCHMARK(ReadAndScan)->Arg(1);
BENCHMARK(ExpandThreeMacros)->Name("ExpandFromAFreshFile")->Arg(0);

}  // namespace
