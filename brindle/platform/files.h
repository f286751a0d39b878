// Files: reading and writing whole files by host path.
//
// A host path is bytes in the ANSI code page and may be written the other system's way: "\" reads as "/", a
// drive letter ("C:") is mapped through a table the host may set (by default to the root), and ".." never
// leaves a mapped drive. A path that begins with "/" and exists as spelled keeps its backslashes. An exact
// spelling wins; else each component is looked for without regard to case; of several matches the
// byte-smallest is taken and the warning sink is told. For a file to be created only its folder is looked
// for. Thread: any.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "brindle/framework/export.h"
#include "brindle/framework/result.h"

namespace brindle {

// Tells one content of a file from another: two equal stamps that are settled mean the same bytes.
struct FileStamp {
    std::array<std::uint64_t, 6> marks{};
    // Changed so recently that a further change might leave the same marks: not to be relied on.
    bool settled = false;

    bool SameContent(const FileStamp& later) const noexcept { return settled && marks == later.marks; }
};

// Makes a directory the current one again when it is destroyed, whatever happened to its name meanwhile.
class KeptDirectory {
  public:
    KeptDirectory() = default;
    KeptDirectory(const KeptDirectory&) = delete;
    KeptDirectory& operator=(const KeptDirectory&) = delete;
    virtual ~KeptDirectory() = default;
};

class Files {
  public:
    // Whether the path names a file or a folder.
    virtual bool Exists(std::string_view hostPath) = 0;
    // The whole file into `bytes`. Fails, `bytes` unchanged, when it cannot be opened or holds more than
    // `limit` bytes; never reads beyond the limit.
    virtual Result ReadWhole(std::string_view hostPath, std::uint64_t limit, std::string& bytes) = 0;
    // Writes the whole file or nothing: a temporary file in the same folder, fsync, rename. An existing file
    // keeps its permission bits, and on failure stays as it was; no temporary file is left behind. A process that
    // ends in the middle leaves the old file and at most one temporary one, ".brindle-PID-NUMBER.tmp", which
    // hinders nobody and may be deleted.
    virtual Result WriteWhole(std::string_view hostPath, std::string_view bytes) = 0;
    // Adds to the end of the file, which is made when missing; a failure adds nothing. A file that is longer than
    // `emptyBeyond` bytes is emptied first. Texts of several processes do not mix, and none is lost: where another
    // program keeps the file locked, this waits up to two seconds and then adds without emptying.
    virtual Result Append(std::string_view hostPath, std::string_view bytes, std::uint64_t emptyBeyond) = 0;
    // Reads the whole file, has `edit` change its bytes and writes them as WriteWhole does; nothing is written
    // when `edit` answers false. A missing file is an empty one with `exists` false; one that differs in letter
    // case only is the file. Meanwhile no other Update of a file in that folder runs, in this process or any
    // other on the machine; waits for them up to two seconds. A failure leaves the file as it was. `edit` must not
    // call this service.
    using Edit = std::function<bool(std::string& bytes, bool exists)>;
    virtual Result Update(std::string_view hostPath, std::uint64_t limit, const Edit& edit) = 0;
    // False, `stamp` unchanged, when there is no such regular file.
    virtual bool Stamp(std::string_view hostPath, FileStamp& stamp) = 0;
    // Whether the path names a folder.
    virtual bool IsFolder(std::string_view hostPath) = 0;
    // The current directory as a host path. Empty when it is gone.
    virtual std::string CurrentDirectory() = 0;
    // A failure changes nothing.
    virtual Result SetCurrentDirectory(std::string_view hostPath) = 0;
    // Remembers the current directory.
    virtual std::unique_ptr<KeptDirectory> KeepDirectory() = 0;
    // The system path a host path stands for (UTF-8 or whatever bytes the system uses).
    virtual std::string SystemPath(std::string_view hostPath, bool forCreation) = 0;
    // Maps a drive letter (any case) to a folder of the system; an empty folder removes the mapping. False
    // for what is not a letter.
    virtual bool MapDrive(char letter, std::string_view systemFolder) = 0;

  protected:
    ~Files() = default;  // never destroyed through this interface
};

// The service in place.
BRINDLE_API Files& CurrentFiles() noexcept;
// Installs a service (not owned; null: the backend's again). Returns the one installed before, or null.
Files* SetFiles(Files* service) noexcept;

// Where the services report what a person should know although the call succeeded. Null: nowhere (the
// default).
using WarningSink = void (*)(const char* text);
WarningSink SetWarningSink(WarningSink sink) noexcept;
void Warn(const char* text);

}  // namespace brindle
