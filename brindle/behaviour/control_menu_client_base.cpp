#include "brindle/behaviour/control_menu_client_base.h"

ControlMenuClientBase::ControlMenuClientBase() noexcept = default;
ControlMenuClientBase::ControlMenuClientBase(const ControlMenuClientBase&) noexcept = default;
ControlMenuClientBase& ControlMenuClientBase::operator=(const ControlMenuClientBase&) noexcept = default;
ControlMenuClientBase::~ControlMenuClientBase() = default;
