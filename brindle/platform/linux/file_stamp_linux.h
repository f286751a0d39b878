// What tells one content of a file, or of a folder, from another.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <ctime>

#include "brindle/platform/files.h"

namespace brindle {

// Seconds of the system's clock, as changes are stamped with.
inline std::int64_t StampSeconds() noexcept {
    timespec now{};
    clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return now.tv_sec;
}

inline FileStamp StampOf(const struct stat& status, std::int64_t now) noexcept {
    const auto number = [](auto value) { return static_cast<std::uint64_t>(value); };
    const auto moment = [&](const timespec& at) {
        return number(at.tv_sec) * 1'000'000'000 + number(at.tv_nsec);
    };
    FileStamp stamp;
    stamp.marks = {number(status.st_dev),  number(status.st_ino),  number(status.st_size),
                   moment(status.st_mtim), moment(status.st_ctim), number(status.st_mode)};
    // The coarsest file systems count in steps of two seconds. Every change, whatever time it claims for itself, sets
    // the time of change of the status.
    stamp.settled = now - status.st_ctim.tv_sec > 3;
    return stamp;
}

}  // namespace brindle
