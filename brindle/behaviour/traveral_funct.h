// TraveralFunct: the visitor of the behaviour tree. (The name is part of the interface.) Thread: it is called on
// the one that walks, the engine's; the items stay the tree's.
#pragma once

#include "brindle/framework/export.h"

class CCommandTreeItem;

class BRINDLE_API TraveralFunct {
  public:
    TraveralFunct() noexcept = default;
    TraveralFunct(const TraveralFunct&) noexcept {}
    TraveralFunct& operator=(const TraveralFunct&) noexcept { return *this; }

    // Called for every node visited; never with null.
    virtual void operator()(CCommandTreeItem* item) const = 0;

  protected:
    ~TraveralFunct() = default;  // never destroyed through this interface
};
