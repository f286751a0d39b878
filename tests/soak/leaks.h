// Leaks: what a soak must notice. `brindle_soak --leak KIND` takes a little more of one resource with every
// measurement; the tests of the soak expect it to fail then. All of it is given back at the end.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace brindle::soak {

class Leaks {
  public:
    // "" (nothing), "memory", "descriptors" or "threads"; std::invalid_argument for anything else.
    explicit Leaks(const std::string& kind) : m_kind(kind) {
        if (!kind.empty() && kind != "memory" && kind != "descriptors" && kind != "threads")
            throw std::invalid_argument("--leak " + kind + ": leaks are memory, descriptors or threads");
    }
    Leaks(const Leaks&) = delete;
    Leaks& operator=(const Leaks&) = delete;
    ~Leaks() {
        {
            const std::lock_guard lock(m_lock);
            m_over = true;
        }
        m_ended.notify_all();
        for (std::thread& thread : m_threads) thread.join();
        for (const int descriptor : m_descriptors) ::close(descriptor);
    }

    void TakeMore() {
        if (m_kind == "memory") m_memory.push_back(std::make_unique<char[]>(4096));
        if (m_kind == "descriptors") m_descriptors.push_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        if (m_kind == "threads")
            m_threads.emplace_back([this] {
                std::unique_lock lock(m_lock);
                m_ended.wait(lock, [this] { return m_over; });
            });
    }

  private:
    std::string m_kind;
    std::vector<std::unique_ptr<char[]>> m_memory;
    std::vector<int> m_descriptors;
    std::vector<std::thread> m_threads;
    std::mutex m_lock;
    std::condition_variable m_ended;
    bool m_over = false;
};

}  // namespace brindle::soak
