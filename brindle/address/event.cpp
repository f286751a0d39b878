// CCommandEvent: the count. Tests: event_test.cpp.
#include "brindle/address/event.h"

CCommandEvent::~CCommandEvent() = default;

int CCommandEvent::AddRef() const {
    return ++m_references;
}

int CCommandEvent::Release() const {
    if (m_references == 1) {
        delete this;
        return 0;
    }
    return --m_references;
}

CCommandEvent* CCommandEvent::Replicate() {
    return nullptr;
}
