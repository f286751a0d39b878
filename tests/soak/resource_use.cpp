// Measuring and judging. Tests: resource_use_test.cpp.
#include "tests/soak/resource_use.h"

#include <malloc.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define BRINDLE_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define BRINDLE_SANITIZED 1
#endif
#endif
#ifdef BRINDLE_SANITIZED
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace brindle::soak {

namespace {

std::uint64_t CountEntries(const char* folder) {
    return static_cast<std::uint64_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

#ifdef BRINDLE_SANITIZED
std::uint64_t HeapBytes() {
    return __sanitizer_get_current_allocated_bytes();
}
std::uint64_t AnonymousBytes() {
    return 0;
}
#else
std::uint64_t HeapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}
std::uint64_t AnonymousBytes() {
    std::ifstream status("/proc/self/status");
    std::uint64_t kilobytes = 0;
    for (std::string word; status >> word;)
        if (word == "RssAnon:") status >> kilobytes;
    return kilobytes * 1024;
}
#endif

struct Resource {
    const char* name;
    std::uint64_t ResourceUse::*value;
    std::uint64_t play;
};

constexpr Resource kResources[] = {
    {"heap memory", &ResourceUse::heap, LevelWatch::kHeapPlay},
    {"anonymous memory", &ResourceUse::anonymous, LevelWatch::kAnonymousPlay},
    {"the number of descriptors", &ResourceUse::descriptors, 0},
    {"the number of threads", &ResourceUse::threads, 0},
};

}  // namespace

ResourceUse MeasureResources() {
    ResourceUse use;
    use.descriptors = CountEntries("/proc/self/fd");
    use.threads = CountEntries("/proc/self/task");
    use.anonymous = AnonymousBytes();
    use.heap = HeapBytes();
    return use;
}

std::vector<std::string> LevelWatch::Rises() const {
    if (m_uses.size() < 20) return {"only " + std::to_string(m_uses.size()) + " measurements, too few"};
    const auto warm = m_uses.begin() + static_cast<std::ptrdiff_t>(m_uses.size() / 10);
    const auto later = warm + (m_uses.end() - warm) / 2;
    std::vector<std::string> rises;
    for (const Resource& resource : kResources) {
        const auto less = [&](const ResourceUse& a, const ResourceUse& b) {
            return a.*resource.value < b.*resource.value;
        };
        const std::uint64_t before = (*std::max_element(warm, later, less)).*resource.value;
        const std::uint64_t after = (*std::max_element(later, m_uses.end(), less)).*resource.value;
        if (after > before + resource.play)
            rises.push_back(std::string(resource.name) + " rises from " + std::to_string(before) + " to " +
                            std::to_string(after));
    }
    return rises;
}

ResourceUse LevelWatch::AfterWarmUp() const {
    return m_uses.empty() ? ResourceUse() : m_uses[m_uses.size() / 10];
}

}  // namespace brindle::soak
