// FileDescriptor: closes a descriptor of the system at the end of its block.
#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace brindle {

class FileDescriptor {
  public:
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { Close(); }
    bool ok() const { return m_fd >= 0; }
    int get() const { return m_fd; }
    // 0 or the system's error.
    int Close() {
        if (m_fd < 0) return 0;
        const int result = ::close(std::exchange(m_fd, -1));
        return result == 0 || errno == EINTR ? 0 : errno;
    }

  private:
    int m_fd;
};

}  // namespace brindle
