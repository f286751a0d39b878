// Requests out, answers in. Tests: snmp_run_test.cpp.
#include "host/snmp_requests.h"

#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace brindle::host {

// What worker threads and the run share; it lives as long as either needs it.
struct SnmpRequests::Inbox {
    struct Item {
        std::uint64_t number;
        SnmpAnswer answer;
    };
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<Item> items;
    std::function<void()> wake;

    void Put(std::uint64_t number, SnmpAnswer answer) {
        const std::lock_guard lock(mutex);
        items.push_back({number, std::move(answer)});
        changed.notify_one();
        if (wake) wake();
    }
};

// Goes with a request and comes back with its answer.
struct SnmpRequests::Ticket {
    std::shared_ptr<Inbox> inbox;
    std::uint64_t number;
};

SnmpRequests::SnmpRequests() : m_inbox(std::make_shared<Inbox>()) {}
SnmpRequests::~SnmpRequests() = default;

void SnmpRequests::OnResult(CSnmpVariable* variable, unsigned long userValue, unsigned int) {
    const std::unique_ptr<Ticket> ticket(reinterpret_cast<Ticket*>(userValue));
    ticket->inbox->Put(ticket->number, {*variable, KySnmpLastFailure(variable).text.str()});
}

void SnmpRequests::Send(SnmpRequest request, Done done) {
    const std::uint64_t number = ++m_last;
    m_pending.emplace(number, std::move(done));
    m_waiting.push_back({number, std::move(request)});
    SendWaiting();
}

void SnmpRequests::SendWaiting() {
    while (!m_waiting.empty() && m_sent < kMostPending) {
        Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        ++m_sent;
        Start(next.number, std::move(next.request));
    }
}

void SnmpRequests::Start(std::uint64_t number, SnmpRequest request) {
    auto ticket = std::make_unique<Ticket>(Ticket{m_inbox, number});
    const auto function = request.what == SnmpRequest::kSet ? KySnmpSetValue : KySnmpGetValue;
    const auto userValue = reinterpret_cast<unsigned long>(ticket.get());
    if (function(&request.variable, OnResult, userValue, request.timeout, request.retries) == 1)
        (void)ticket.release();  // comes back with the answer
    else
        m_inbox->Put(number, {request.variable, "the system has no thread for it"});
}

bool SnmpRequests::WaitForAnswer(std::chrono::milliseconds longest) {
    std::unique_lock lock(m_inbox->mutex);
    return m_inbox->changed.wait_for(lock, longest, [this] { return !m_inbox->items.empty(); });
}

void SnmpRequests::SetWake(std::function<void()> wake) {
    const std::lock_guard lock(m_inbox->mutex);
    m_inbox->wake = std::move(wake);
}

bool SnmpRequests::TakeAnswers() {
    std::vector<Inbox::Item> items;
    {
        const std::lock_guard lock(m_inbox->mutex);
        items.swap(m_inbox->items);
    }
    m_sent -= items.size();
    SendWaiting();
    for (Inbox::Item& item : items) {
        const auto found = m_pending.find(item.number);
        const Done done = std::move(found->second);
        m_pending.erase(found);
        done(item.answer);
    }
    return !items.empty();
}

}  // namespace brindle::host
