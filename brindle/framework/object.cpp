// Run-time classes: the library's own stand in a constant table (runtime_classes.h); classes of the host are
// chained in front of one another as they are registered, so that registering needs neither lock nor memory.
// Tests: object_test.cpp.
#include "brindle/framework/object.h"

#include <atomic>
#include <cstring>

#include "brindle/framework/runtime_classes.h"

namespace {

constinit std::atomic<const CRuntimeClass*> g_latestHostClass{nullptr};

bool IsRegistered(const CRuntimeClass& type) noexcept {
    for (const CRuntimeClass* own : brindle::LibraryRuntimeClasses())
        if (own == &type) return true;
    for (const CRuntimeClass* host = g_latestHostClass.load(std::memory_order_acquire); host;
         host = host->m_pNextClass)
        if (host == &type) return true;
    return false;
}

}  // namespace

constinit const CRuntimeClass CObject::classCObject = {"CObject", sizeof(CObject), 0xFFFF,
                                                       nullptr,   nullptr,         nullptr};

const CRuntimeClass* CObject::GetRuntimeClass() const {
    return &classCObject;
}

CObject::~CObject() = default;

void CObject::Serialize(CArchive&) {}

void CObject::AssertValid() const {}

void CObject::Dump(CDumpContext&) const {}

CObject* CRuntimeClass::CreateObject() const {
    return m_pfnCreateObject ? m_pfnCreateObject() : nullptr;
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const noexcept {
    for (const CRuntimeClass* type = this; type; type = type->m_pBaseClass)
        if (type == base) return true;
    return false;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* name) noexcept {
    if (!name) return nullptr;
    for (const CRuntimeClass* own : brindle::LibraryRuntimeClasses())
        if (std::strcmp(own->m_lpszClassName, name) == 0) return own;
    const CRuntimeClass* first = nullptr;
    for (const CRuntimeClass* host = g_latestHostClass.load(std::memory_order_acquire); host;
         host = host->m_pNextClass)
        if (std::strcmp(host->m_lpszClassName, name) == 0) first = host;  // the last in the chain came first
    return first;
}

CObject* CRuntimeClass::CreateObject(const char* name) {
    const CRuntimeClass* const type = FromName(name);
    return type ? type->CreateObject() : nullptr;
}

void RegisterRuntimeClass(const CRuntimeClass& type) noexcept {
    if (IsRegistered(type)) return;
    const CRuntimeClass* latest = g_latestHostClass.load(std::memory_order_relaxed);
    do {
        type.m_pNextClass = latest;
    } while (!g_latestHostClass.compare_exchange_weak(latest, &type, std::memory_order_release,
                                                      std::memory_order_relaxed));
}
