// Names and presses for assistive software: every target of a map window is a child of it.
#pragma once

namespace brindle::map {

// Once, before the first window is shown.
void InstallMapAccessibility();

}  // namespace brindle::map
