// Detached threads with a small stack. Tests: snmp_test.cpp, snmp_process_test.cpp.
#include "brindle/platform/worker_thread.h"

#include <pthread.h>

#include <new>

namespace brindle {
namespace {

struct Start {
    void (*work)(void*);
    void* data;
};

extern "C" void* RunWorker(void* given) {
    const Start start = *static_cast<Start*>(given);
    delete static_cast<Start*>(given);
    start.work(start.data);
    return nullptr;
}

bool Create(Start* start) noexcept {
    pthread_attr_t attributes;
    if (::pthread_attr_init(&attributes) != 0) return false;
    ::pthread_attr_setstacksize(&attributes, kWorkerStack);
    ::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_t unused;
    const int error = ::pthread_create(&unused, &attributes, RunWorker, start);
    ::pthread_attr_destroy(&attributes);
    return error == 0;
}

}  // namespace

bool StartWorker(void (*work)(void* data), void* data) noexcept {
    auto* start = new (std::nothrow) Start{work, data};
    if (start && Create(start)) return true;
    delete start;
    return false;
}

}  // namespace brindle
