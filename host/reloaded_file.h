// ReloadedFile: a file of a running site that is read again when it has changed. One kind for each sort of file;
// another kind derives from this and is handed to SiteReloader::Add.
#pragma once

#include <brindle/library/host_path_access.h>

#include <string>
#include <utility>

#include "host/problem.h"
#include "host/run_state.h"

namespace brindle::host {

class ReloadedFile {
  public:
    // `known`: the marks of the content that is in use.
    ReloadedFile(std::string path, const HostFileMarks& known) : m_path(std::move(path)), m_known(known) {}
    ReloadedFile(const ReloadedFile&) = delete;
    ReloadedFile& operator=(const ReloadedFile&) = delete;
    virtual ~ReloadedFile() = default;

    const std::string& Path() const noexcept { return m_path; }
    const HostFileMarks& Known() const noexcept { return m_known; }
    void SetKnown(const HostFileMarks& marks) noexcept { m_known = marks; }

    // Reads the file into fresh objects; what is in use stays as it is. What an earlier call read is dropped. A check
    // of the file has found nothing.
    virtual void Read(Problems& problems) = 0;
    // Puts what Read has read in the place of what is in use, and writes records of what that changed.
    virtual void TakeOver(RunState& state) = 0;
    // What becomes of a file in which something is wrong, for the message.
    virtual const char* WhenRefused() const { return "what was read before stays in use"; }

  private:
    std::string m_path;
    HostFileMarks m_known;
};

// A file that is read whenever it is used: it only needs its check.
class CheckedFile final : public ReloadedFile {
  public:
    using ReloadedFile::ReloadedFile;
    void Read(Problems&) override {}
    void TakeOver(RunState& state) override;
    const char* WhenRefused() const override { return "it is read at use, as it is"; }
};

// A record that a file took over; the caller adds what changed.
RunRecord ReloadRecord(const RunState& state, const std::string& path);

}  // namespace brindle::host
