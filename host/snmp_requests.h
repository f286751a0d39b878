// SnmpRequests: the SNMP requests of a run. They go out on the library's worker threads, a limited number at
// once; their answers come back through a queue and are handed out on the run's own thread.
//
// Thread: the run's, for everything. An object that goes while requests are pending forgets them.
#pragma once

#include <brindle/snmp/snmp.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace brindle::host {

struct SnmpRequest {
    enum What { kGet, kSet };
    What what = kGet;
    CSnmpVariable variable;
    int timeout = 1000;  // milliseconds
    int retries = 1;
};

struct SnmpAnswer {
    CSnmpVariable variable;
    std::string why;  // why it failed or was refused; empty: it did not
};

class SnmpRequests {
  public:
    // Sent at once; more wait for their turn.
    static constexpr std::size_t kMostPending = 64;

    using Done = std::function<void(const SnmpAnswer& answer)>;

    SnmpRequests();
    SnmpRequests(const SnmpRequests&) = delete;
    SnmpRequests& operator=(const SnmpRequests&) = delete;
    ~SnmpRequests();

    // Sends the request, now or when others have ended. `done` is called by a later TakeAnswers, exactly
    // once.
    void Send(SnmpRequest request, Done done);
    // Whether answers are still to come.
    bool IsBusy() const noexcept { return !m_pending.empty(); }
    // Waits until an answer is there; false when none came within the time.
    bool WaitForAnswer(std::chrono::milliseconds longest);
    // Called whenever an answer has come; from any thread, and not after this was called again.
    void SetWake(std::function<void()> wake);
    // Hands out the answers that are there, and sends what waits. False when there was none.
    bool TakeAnswers();

  private:
    struct Inbox;
    struct Ticket;
    struct Waiting {
        std::uint64_t number;
        SnmpRequest request;
    };
    static void OnResult(CSnmpVariable* variable, unsigned long userValue, unsigned int result);
    void SendWaiting();
    void Start(std::uint64_t number, SnmpRequest request);

    std::shared_ptr<Inbox> m_inbox;
    std::unordered_map<std::uint64_t, Done> m_pending;  // by number, waiting ones too
    std::deque<Waiting> m_waiting;
    std::size_t m_sent = 0;
    std::uint64_t m_last = 0;
};

}  // namespace brindle::host
