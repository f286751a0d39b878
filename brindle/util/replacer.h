// Orvane::Replacer: a function object that says of one element whether to remove, replace or keep it. Thread: the
// one that calls what takes it.
#pragma once

#include "brindle/framework/export.h"
#include "brindle/framework/string_a.h"

namespace Orvane {

// Verdicts. Kept: plain numbers, as hosts return them.
constexpr int kRemoveElement = 0;
constexpr int kReplaceElement = 1;  // by the output element
constexpr int kKeepElement = 2;

// For T = char, int and CStringA. Never destroyed through this interface.
template <class T>
class Replacer {
  public:
    // The verdict on `element`; `out` is set when it is kReplaceElement and unspecified otherwise.
    virtual int operator()(T element, T& out) = 0;

  protected:
    ~Replacer() = default;
};

}  // namespace Orvane
