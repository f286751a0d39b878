// The ways programs save a file, for tests of whoever notices it.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace brindle::testing {

enum class Saving { kInPlace, kTruncateAndWrite, kRenameOver, kBackupAndRename };

struct SavingWay {
    const char* label;
    Saving way;
    bool replaces;  // the name then stands for another file
};
inline constexpr SavingWay kSavingWays[] = {{"in place", Saving::kInPlace, false},
                                            {"truncate and write", Saving::kTruncateAndWrite, false},
                                            {"rename over", Saving::kRenameOver, true},
                                            {"backup and rename", Saving::kBackupAndRename, true}};

// Gives an existing file other bytes.
inline void SaveBy(Saving way, const std::filesystem::path& path, const std::string& bytes) {
    const std::string temporary = path.string() + ".tmp";
    switch (way) {
        case Saving::kInPlace: {
            const int file = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
            static_cast<void>(::pwrite(file, bytes.data(), bytes.size(), 0) +
                              ::ftruncate(file, static_cast<off_t>(bytes.size())));
            ::close(file);
            return;
        }
        case Saving::kTruncateAndWrite:
            std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
            return;
        case Saving::kBackupAndRename:
            std::filesystem::rename(path, path.string() + "~");
            [[fallthrough]];
        case Saving::kRenameOver:
            std::ofstream(temporary, std::ios::binary) << bytes;
            std::filesystem::rename(temporary, path);
            return;
    }
}

}  // namespace brindle::testing
