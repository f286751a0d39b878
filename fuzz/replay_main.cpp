// Replays a fuzz target's corpus as an ordinary test: runs every file of the folders (and every file) named
// on the command line through the target once, in byte order. Fails when there is nothing to run, so that a
// corpus that went missing does not pass silently.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<std::string> FilesBelow(const char* path) {
    std::vector<std::string> files;
    if (!fs::is_directory(path)) return {path};
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool Replay(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
        return false;
    }
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::fprintf(stderr, "%s: %zu bytes\n", path.c_str(),
                 bytes.size());  // before: names the input of a crash
    return LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const std::string& path : FilesBelow(argv[i])) {
            if (!Replay(path)) return 1;
            ++count;
        }
    }
    std::fprintf(stderr, "%zu inputs replayed\n", count);
    return count == 0 ? 1 : 0;
}
