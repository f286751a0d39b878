// A small host of the SNMP functions, for tests that need a process of their own: what starting them touches, how a
// process ends meanwhile, what happens when there are no threads or only high descriptors.
//
//   snmp_probe get AGENT OID       one get; exit 0 when it succeeded. The beginning is marked in a trace of system
//                                  calls by access("/snmp-begins").
//   snmp_probe exit AGENT COUNT    that many gets, and the end of the process while they are pending
//   snmp_probe limit AGENT OID     no memory for a thread's stack: the call says so; with memory again it works
//   snmp_probe high AGENT OID      one get on a descriptor above select's limit
//   snmp_probe many AGENT COUNT TIMEOUT RETRIES
//                                  that many gets at once; prints how many called back with a time-out
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "brindle/snmp/snmp.h"

namespace {

constinit std::atomic<int> g_calls{0};
constinit std::atomic<int> g_successes{0};
constinit std::atomic<int> g_timeOuts{0};

void OnResult(CSnmpVariable* variable, unsigned long, unsigned int result) {
    if (result == 1) ++g_successes;
    if (KySnmpLastFailure(variable).kind == brindle::SnmpFailureKind::kTimeout) ++g_timeOuts;
    ++g_calls;
}

CSnmpVariable VariableAt(const char* agent, const char* oid) {
    CSnmpVariable variable;
    variable.agent = agent;
    variable.community = "public";
    variable.oid = oid;
    return variable;
}

bool WaitForCalls(int count) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (g_calls < count) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

bool Get(const char* agent, const char* oid) {
    CSnmpVariable variable = VariableAt(agent, oid);
    const int before = g_calls;
    if (KySnmpGetValue(&variable, OnResult, 0, 5000, 1) != 1 || !WaitForCalls(before + 1)) return false;
    return g_successes > 0;
}

int RunGet(const char* agent, const char* oid) {
    ::access("/snmp-begins", F_OK);
    return Get(agent, oid) ? 0 : 1;
}

int RunExit(const char* agent, int count) {
    CSnmpVariable variable = VariableAt(agent, "1.5.0");
    for (int i = 0; i < count; ++i)
        if (KySnmpGetValue(&variable, OnResult, 0, 20, 100) != 1) return 1;
    return 0;
}

// Pages of address space in use.
long UsedPages() {
    long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld", &pages) != 1) pages = 0;
        std::fclose(file);
    }
    return pages;
}

int RunLimit(const char* agent, const char* oid) {
    CSnmpVariable variable = VariableAt(agent, oid);
    rlimit before{};
    if (::getrlimit(RLIMIT_AS, &before) != 0) return 2;
    rlimit low = before;
    low.rlim_cur = static_cast<rlim_t>(UsedPages() * ::sysconf(_SC_PAGESIZE)) + (64U << 10);
    if (::setrlimit(RLIMIT_AS, &low) != 0) return 2;
    const int get = KySnmpGetValue(&variable, OnResult, 0, 5000, 1);
    const int set = KySnmpSetValue(&variable, OnResult, 0, 5000, 1);
    ::setrlimit(RLIMIT_AS, &before);
    if (get != 0 || set != 0) return 1;
    if (!Get(agent, oid)) return 3;
    return g_calls == 1 ? 0 : 4;  // only the last one called back
}

int RunHigh(const char* agent, const char* oid) {
    rlimit limit{};
    ::getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = limit.rlim_max < 2048 ? limit.rlim_max : 2048;
    ::setrlimit(RLIMIT_NOFILE, &limit);
    int last = 0;
    while (last >= 0 && last < 1100) last = ::open("/dev/null", O_RDONLY);
    if (last < 0) return 2;
    return Get(agent, oid) ? 0 : 1;
}

int RunMany(const char* agent, int count, long timeout, int retries) {
    CSnmpVariable variable = VariableAt(agent, "1.5.0");
    for (int i = 0; i < count; ++i)
        if (KySnmpGetValue(&variable, OnResult, 0, timeout, retries) != 1) return 1;
    const bool all = WaitForCalls(count);
    std::printf("%d\n", g_timeOuts.load());
    return all ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 3 ? argv[1] : "";
    if (what == "get") return RunGet(argv[2], argv[3]);
    if (what == "exit") return RunExit(argv[2], std::atoi(argv[3]));
    if (what == "limit") return RunLimit(argv[2], argv[3]);
    if (what == "high") return RunHigh(argv[2], argv[3]);
    if (what == "many" && argc > 5)
        return RunMany(argv[2], std::atoi(argv[3]), std::atol(argv[4]), std::atoi(argv[5]));
    std::fputs("see the top of snmp_probe.cpp\n", stderr);
    return 64;
}
