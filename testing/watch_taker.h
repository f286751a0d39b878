// Takes the completions of a directory watch on a thread of its own, so that a test can wait for them with a deadline.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

#include "brindle/platform/directory_watch.h"

namespace brindle::testing {

class WatchTaker {
  public:
    explicit WatchTaker(std::unique_ptr<DirectoryWatch> watch) : m_watch(std::move(watch)) {
        m_thread = std::thread([this] { Run(); });
    }
    WatchTaker(const WatchTaker&) = delete;
    WatchTaker& operator=(const WatchTaker&) = delete;
    ~WatchTaker() {
        m_watch->Close();
        m_thread.join();
    }

    DirectoryWatch& Watch() { return *m_watch; }
    // The next completion; nothing when none came within half a minute.
    std::optional<DirectoryCompletion> Next() {
        std::unique_lock lock(m_mutex);
        if (!m_came.wait_for(lock, std::chrono::seconds(30), [this] { return !m_taken.empty(); })) return {};
        DirectoryCompletion completion = std::move(m_taken.front());
        m_taken.pop_front();
        return completion;
    }

  private:
    void Run() {
        DirectoryCompletion completion;
        while (m_watch->Wait(completion)) {
            const std::lock_guard lock(m_mutex);
            m_taken.push_back(std::move(completion));
            m_came.notify_all();
        }
    }

    std::unique_ptr<DirectoryWatch> m_watch;
    std::mutex m_mutex;
    std::condition_variable m_came;
    std::deque<DirectoryCompletion> m_taken;
    std::thread m_thread;
};

}  // namespace brindle::testing
