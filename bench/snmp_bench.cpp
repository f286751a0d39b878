// Gets from an agent on this machine, beside net-snmp by hand: a thread, a session, a request and its end for each get,
// with the same lock round what net-snmp does not guard. And a thousand requests nobody answers, beside a bare wait.
// All of it is measured by the clock on the wall, as most of it happens on other threads.
#include <benchmark/benchmark.h>
#include <net-snmp/net-snmp-config.h>

#include <net-snmp/net-snmp-includes.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "brindle/snmp/snmp.h"
#include "testing/snmpd_process.h"

namespace {

brindle::testing::SnmpdProcess& Agent() {
    static brindle::testing::SnmpdProcess agent;
    return agent;
}

// Counts what has ended.
class Countdown {
  public:
    explicit Countdown(int count) : m_left(count) {}
    void Down() {
        const std::lock_guard lock(m_mutex);
        if (--m_left == 0) m_changed.notify_all();
    }
    void Wait() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_left == 0; });
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_left;
};

std::atomic<int> g_failures{0};

void OnResult(CSnmpVariable* variable, unsigned long userValue, unsigned int result) {
    if (result != 1 || variable->value != "studio-agent") ++g_failures;
    reinterpret_cast<Countdown*>(userValue)->Down();
}

void Gets(benchmark::State& state, int atOnce) {
    CSnmpVariable variable;
    variable.agent = Agent().Address();
    variable.community = "public";
    variable.oid = "1.3.6.1.2.1.1.5.0";
    g_failures = 0;
    for (auto _ : state) {
        Countdown countdown(atOnce);
        for (int i = 0; i < atOnce; ++i)
            KySnmpGetValue(&variable, OnResult, reinterpret_cast<unsigned long>(&countdown), 5000, 1);
        countdown.Wait();
    }
    if (g_failures > 0) state.SkipWithError("a get failed");
    state.SetItemsProcessed(state.iterations() * atOnce);
}

// --- by hand ---

std::mutex g_library;

void GetByHand(const std::string& agent, Countdown& countdown) {
    netsnmp_session wanted;
    void* session = nullptr;
    netsnmp_pdu* request = nullptr;
    {
        const std::lock_guard lock(g_library);
        snmp_sess_init(&wanted);
        std::string peer = agent;
        std::string community = "public";
        wanted.version = SNMP_VERSION_2c;
        wanted.peername = peer.data();
        wanted.community = reinterpret_cast<u_char*>(community.data());
        wanted.community_len = community.size();
        wanted.timeout = 5'000'000;
        wanted.retries = 1;
        session = snmp_sess_open(&wanted);
        const oid name[] = {1, 3, 6, 1, 2, 1, 1, 5, 0};
        request = snmp_pdu_create(SNMP_MSG_GET);
        snmp_add_null_var(request, name, 9);
    }
    netsnmp_pdu* answer = nullptr;
    if (snmp_sess_synch_response(session, request, &answer) != STAT_SUCCESS || !answer->variables ||
        answer->variables->val_len != 12)
        ++g_failures;
    const std::lock_guard lock(g_library);
    if (answer) snmp_free_pdu(answer);
    snmp_sess_close(session);
    countdown.Down();
}

void GetsByHand(benchmark::State& state, int atOnce) {
    const std::string agent = "udp:" + Agent().Address();
    g_failures = 0;
    for (auto _ : state) {
        Countdown countdown(atOnce);
        for (int i = 0; i < atOnce; ++i)
            std::thread([&agent, &countdown] { GetByHand(agent, countdown); }).detach();
        countdown.Wait();
    }
    if (g_failures > 0) state.SkipWithError("a get failed");
    state.SetItemsProcessed(state.iterations() * atOnce);
}

void SnmpGetsOneByOne(benchmark::State& state) {
    Gets(state, 1);
}
void SnmpGetsOneByOneByHand(benchmark::State& state) {
    GetsByHand(state, 1);
}
void Snmp64AtOnce(benchmark::State& state) {
    Gets(state, 64);
}
void Snmp64AtOnceByHand(benchmark::State& state) {
    GetsByHand(state, 64);
}
BENCHMARK(SnmpGetsOneByOne)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(SnmpGetsOneByOneByHand)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(Snmp64AtOnce)->MeasureProcessCPUTime()->UseRealTime();
BENCHMARK(Snmp64AtOnceByHand)->MeasureProcessCPUTime()->UseRealTime();

// --- nobody answers ---

constexpr int kTimeout = 500;  // milliseconds
constexpr int kRetries = 1;

void OnNoAnswer(CSnmpVariable*, unsigned long userValue, unsigned int result) {
    if (result != 0) ++g_failures;
    reinterpret_cast<Countdown*>(userValue)->Down();
}

void SnmpThousandToNobody(benchmark::State& state) {
    CSnmpVariable variable;
    variable.agent = "127.0.0.1:9";
    variable.oid = "1.5.0";
    g_failures = 0;
    for (auto _ : state) {
        Countdown countdown(1000);
        for (int i = 0; i < 1000; ++i)
            if (KySnmpGetValue(&variable, OnNoAnswer, reinterpret_cast<unsigned long>(&countdown), kTimeout,
                               kRetries) != 1)
                countdown.Down();
        countdown.Wait();
    }
    if (g_failures > 0) state.SkipWithError("somebody answered");
}
void BareWait(benchmark::State& state) {
    for (auto _ : state) std::this_thread::sleep_for(std::chrono::milliseconds(kTimeout * (kRetries + 1)));
}
BENCHMARK(SnmpThousandToNobody)->UseRealTime()->Iterations(1);
BENCHMARK(BareWait)->UseRealTime()->Iterations(1);

}  // namespace
