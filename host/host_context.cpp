// The slot of the host's context.
#include "host/host_context.h"

#include <utility>

namespace brindle::host {

namespace {

constinit HostContext* registered = nullptr;

}  // namespace

HostContext* RegisterHostContext(HostContext* context) noexcept {
    return std::exchange(registered, context);
}

HostContext* CurrentHostContext() noexcept {
    return registered;
}

}  // namespace brindle::host
