// One thread, one session, one request, one call-back. Tests: snmp_test.cpp, snmp_agent_test.cpp.
#include "brindle/snmp/snmp.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <new>

#include "brindle/platform/worker_thread.h"
#include "brindle/snmp/snmp_value_text.h"

namespace {

using brindle::SnmpBinding;
using brindle::SnmpFailure;
using brindle::SnmpFailureKind;
using brindle::SnmpManager;
using brindle::SnmpOperation;
using brindle::SnmpSession;

constinit std::atomic<brindle::SnmpVersion> g_version{brindle::SnmpVersion::k2c};

struct Request {
    SnmpOperation operation;
    CSnmpVariable variable;
    KySnmpCallback callback;
    unsigned long userValue;
    brindle::SnmpTarget target;
    SnmpManager& manager;  // the one installed when the call was made
    SnmpFailure failure;
    std::string octets;  // of the answer
};

// The request whose call-back runs on this thread.
constinit thread_local const Request* t_request = nullptr;

bool BadIdentifier(Request& request) {
    request.failure = {SnmpFailureKind::kBadIdentifier, 0,
                       "\"" + request.variable.oid.str() + "\" is no identifier in dotted numbers"};
    return false;
}

bool Get(Request& request, SnmpSession& session) {
    CSnmpVariable& variable = request.variable;
    if (variable.skipRequest) {
        request.failure = {SnmpFailureKind::kSkipped, 0, "the request was not meant to be sent"};
        return false;
    }
    SnmpBinding binding;
    if (!request.manager.TextToOid(variable.oid.view(), binding.name)) return BadIdentifier(request);
    if (!request.manager.Request(session, request.operation, binding, request.failure)) return false;
    if (!request.failure.ok()) return false;
    std::string oid;
    request.manager.OidToText(binding.name, oid);
    CStringA value(SnmpValueText(request.manager, binding.value));
    request.octets = std::move(binding.value.octets);
    variable.oid = std::move(oid);
    variable.type = static_cast<std::int16_t>(binding.value.tag);
    variable.value = std::move(value);
    return true;
}

bool Set(Request& request, SnmpSession& session) {
    const CSnmpVariable& variable = request.variable;
    std::string oid = variable.oid.str();
    // Kept: by its characters, so that "1.25.1" is absolute here and relative in a get.
    if (oid.starts_with("1.2") || oid.starts_with("1.3")) oid.insert(0, 1, '.');
    SnmpBinding binding;
    if (!request.manager.TextToOid(oid, binding.name)) return BadIdentifier(request);
    if (!ReadSnmpValue(request.manager, variable.type, variable.value.view(), binding.value)) {
        request.failure = {SnmpFailureKind::kBadValue, 0,
                           "\"" + variable.value.str() + "\" is no identifier in dotted numbers"};
        return false;
    }
    // Kept: an agent that refuses counts as a success.
    return request.manager.Request(session, request.operation, binding, request.failure);
}

struct CloseSession {
    SnmpManager* manager;
    void operator()(SnmpSession* session) const { manager->Close(session); }
};

bool Perform(Request& request) {
    const std::unique_ptr<SnmpSession, CloseSession> session(
        request.manager.Open(request.target, request.failure), CloseSession{&request.manager});
    if (!session) return false;
    return request.operation == SnmpOperation::kGet ? Get(request, *session) : Set(request, *session);
}

void Work(void* given) noexcept {
    const std::unique_ptr<Request> request(static_cast<Request*>(given));
    bool done = false;
    try {
        done = Perform(*request);
    } catch (const std::bad_alloc&) {
        request->failure.kind = SnmpFailureKind::kSystem;
    }
    if (!request->callback) return;
    t_request = request.get();
    request->callback(&request->variable, request->userValue, done ? 1 : 0);
    t_request = nullptr;
}

brindle::SnmpTarget TargetOf(const CSnmpVariable& variable, long timeout, int retries) {
    brindle::SnmpTarget target;
    target.agent = variable.agent.str();
    target.community = variable.community.str();
    target.timeout = std::chrono::milliseconds(std::clamp(timeout, 1L, long{INT32_MAX}));
    target.retries = std::max(retries, 0);
    target.version = g_version.load(std::memory_order_relaxed);
    return target;
}

int Start(SnmpOperation operation, const CSnmpVariable* variable, KySnmpCallback callback,
          unsigned long userValue, long timeout, int retries) {
    if (!variable) return 0;
    try {
        auto request = std::make_unique<Request>(Request{operation,
                                                         *variable,
                                                         callback,
                                                         userValue,
                                                         TargetOf(*variable, timeout, retries),
                                                         brindle::CurrentSnmpManager(),
                                                         {},
                                                         {}});
        if (!brindle::StartWorker(Work, request.get())) return 0;
        (void)request.release();  // the worker's from here on
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

}  // namespace

int KySnmpGetValue(CSnmpVariable* variable, KySnmpCallback callback, unsigned long userValue, long timeout,
                   int retries) {
    return Start(SnmpOperation::kGet, variable, callback, userValue, timeout, retries);
}

int KySnmpSetValue(CSnmpVariable* variable, KySnmpCallback callback, unsigned long userValue, long timeout,
                   int retries) {
    return Start(SnmpOperation::kSet, variable, callback, userValue, timeout, retries);
}

brindle::SnmpFailure KySnmpLastFailure(const CSnmpVariable* variable) {
    return t_request && &t_request->variable == variable ? t_request->failure : SnmpFailure();
}

CStringA KySnmpLastOctets(const CSnmpVariable* variable) {
    return t_request && &t_request->variable == variable ? CStringA(t_request->octets) : CStringA();
}

CStringA KySnmpPlainValue(int type, const CStringA& value) {
    SnmpManager& manager = brindle::CurrentSnmpManager();
    brindle::SnmpValue read;
    if (!brindle::ReadSnmpValue(manager, type, value.view(), read)) return {};
    return CStringA(brindle::SnmpValueText(manager, read));
}

brindle::SnmpVersion KySnmpSetVersion(brindle::SnmpVersion version) noexcept {
    return g_version.exchange(version);
}
