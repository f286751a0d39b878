// Calls of KySnmpGetValue and KySnmpSetValue whose call-backs a test waits for.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "brindle/snmp/snmp.h"

namespace brindle::testing {

struct SnmpResult {
    CSnmpVariable variable;
    unsigned long userValue = 0;
    unsigned int result = 99;
    SnmpFailure failure;
    CStringA octets;
    std::thread::id thread;
};

inline CSnmpVariable SnmpVariableAt(const std::string& agent, const std::string& oid,
                                    const std::string& community = "public") {
    CSnmpVariable variable;
    variable.agent = agent;
    variable.community = community;
    variable.oid = oid;
    return variable;
}

// Collects what call-backs bring. It must outlive the calls: take as many results as calls were made.
class SnmpCalls {
  public:
    bool Get(CSnmpVariable variable, long timeout = 5000, int retries = 1) {
        return KySnmpGetValue(&variable, OnResult, UserValue(), timeout, retries) == 1;
    }
    bool Set(CSnmpVariable variable, long timeout = 5000, int retries = 1) {
        return KySnmpSetValue(&variable, OnResult, UserValue(), timeout, retries) == 1;
    }
    // Waits until that many results have come, half a minute at most; then fewer.
    std::vector<SnmpResult> Take(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(30), [&] { return m_results.size() >= count; });
        return std::exchange(m_results, {});
    }
    SnmpResult TakeOne() {
        std::vector<SnmpResult> results = Take(1);
        return results.empty() ? SnmpResult() : results[0];
    }

    SnmpResult GetNow(CSnmpVariable variable, long timeout = 5000, int retries = 1) {
        return Get(std::move(variable), timeout, retries) ? TakeOne() : SnmpResult();
    }
    SnmpResult SetNow(CSnmpVariable variable, long timeout = 5000, int retries = 1) {
        return Set(std::move(variable), timeout, retries) ? TakeOne() : SnmpResult();
    }

    unsigned long UserValue() const { return reinterpret_cast<unsigned long>(this); }

    static void OnResult(CSnmpVariable* variable, unsigned long userValue, unsigned int result) {
        auto& calls = *reinterpret_cast<SnmpCalls*>(userValue);
        SnmpResult taken{*variable,
                         userValue,
                         result,
                         KySnmpLastFailure(variable),
                         KySnmpLastOctets(variable),
                         std::this_thread::get_id()};
        const std::lock_guard lock(calls.m_mutex);
        calls.m_results.push_back(std::move(taken));
        calls.m_changed.notify_all();  // under the lock: whoever waits may end this object next
    }

  private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<SnmpResult> m_results;
};

}  // namespace brindle::testing
