// ResourceUse: what this process holds of the machine, and LevelWatch: whether that stays level while it works.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace brindle::soak {

struct ResourceUse {
    std::uint64_t heap = 0;       // bytes allocated and not freed
    std::uint64_t anonymous = 0;  // bytes of memory in use that belong to no file; 0: judged by nobody
    std::uint64_t descriptors = 0;
    std::uint64_t threads = 0;
};

// The present use of this process. Under sanitizers, which hold freed memory back, `anonymous` is 0.
ResourceUse MeasureResources();

// Judges measurements taken at even distances. The first tenth of them is the warm-up. Of the others the highest of
// the later half must not exceed the highest of the earlier half: by nothing for descriptors and threads, by a
// fixed play for memory, because what a station holds depends on the moment (pending repeats, the longest text).
class LevelWatch {
  public:
    static constexpr std::uint64_t kHeapPlay = 64 * 1024;
    static constexpr std::uint64_t kAnonymousPlay = 1024 * 1024;

    void Add(const ResourceUse& use) { m_uses.push_back(use); }
    // What rises, as "memory rises from A to B bytes"; empty: everything is level. Fewer than 20 measurements
    // are too few and say so.
    std::vector<std::string> Rises() const;
    // The first measurement after the warm-up; zeros without any.
    ResourceUse AfterWarmUp() const;

  private:
    std::vector<ResourceUse> m_uses;
};

}  // namespace brindle::soak
