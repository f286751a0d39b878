// ServiceSlot: where one platform service is kept. Empty means the backend's own service, so that every
// service is in place without any call; a setter replaces it for the whole process. Reading is one atomic
// load.
#pragma once

#include <atomic>

namespace brindle {

template <class Service>
class ServiceSlot {
  public:
    // The installed service, else the one given.
    Service& GetOr(Service& backend) const noexcept {
        Service* installed = m_service.load(std::memory_order_acquire);
        return installed ? *installed : backend;
    }
    // Installs a service (not owned; null: back to the backend's). Returns the one installed before, or null.
    Service* Set(Service* service) noexcept { return m_service.exchange(service, std::memory_order_acq_rel); }

  private:
    std::atomic<Service*> m_service{nullptr};
};

// Installs a service for one scope: what tests use.
template <class Service>
class ScopedService {
  public:
    using Setter = Service* (*)(Service*);
    ScopedService(Setter set, Service& service) : m_set(set), m_previous(set(&service)) {}
    ScopedService(const ScopedService&) = delete;
    ScopedService& operator=(const ScopedService&) = delete;
    ~ScopedService() { m_set(m_previous); }

  private:
    Setter m_set;
    Service* m_previous;
};

}  // namespace brindle
