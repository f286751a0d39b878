// BackendInfo: what the linked backend is made of: the system libraries behind the services, with the versions
// that are loaded (not those of the headers the build saw). A bug report needs it. Thread: any.
#pragma once

#include <string>
#include <vector>

namespace brindle {

struct BackendPart {
    std::string service;  // "XML", "code page" ...
    std::string library;  // "libxml2", or "own tables" where no library stands behind the service
    std::string version;  // of the loaded library; empty: none of its own
};

struct BackendInfo {
    std::string name;    // "linux"
    std::string system;  // the operating system with its version; empty when it does not tell
    std::vector<BackendPart> parts;
};

// What the linked backend says of itself.
BackendInfo DescribeBackend();

}  // namespace brindle
