// The INI store over the files service, which maps the paths, replaces files in one step and keeps other programs
// out meanwhile. A file that was read is kept, and used again while its stamp says that it has not changed.
//
// Cannot: keep files that changed within the last seconds, whose stamp would not show one more change; those are
// read each time. Tests: ini_store_test.cpp, ini_store_files_test.cpp.
#include <algorithm>
#include <list>
#include <memory>
#include <mutex>
#include <string>

#include "brindle/framework/never_destroyed.h"
#include "brindle/platform/files.h"
#include "brindle/platform/ini_answer.h"
#include "brindle/platform/ini_store.h"

namespace brindle {
namespace {

class FilesIniStore final : public IniStore {
  public:
    std::size_t Read(const char* section, const char* key, const char* defaultValue, char* buffer,
                     std::size_t size, const char* file) override {
        const std::lock_guard lock(m_mutex);
        return AnswerIniRead(Open(file ? file : ""), section, key, defaultValue, buffer, size);
    }

    Result Write(const char* section, const char* key, const char* value, const char* file) override {
        if (Result refused = CheckIniWrite(section, key, value); !refused.ok()) return refused;
        return CurrentFiles().Update(file ? file : "", kIniMaxBytes, [&](std::string& text, bool exists) {
            IniDocument document(std::move(text));
            const bool changed = ApplyIniWrite(document, section, key, value);
            text = document.Text();
            return changed || !exists;
        });
    }

  private:
    static constexpr std::size_t kMostKept = 4;  // a host has three such files

    struct Kept {
        const Files* service;
        std::string path;
        FileStamp stamp;
        std::unique_ptr<IniDocument> document;
    };

    // The file's document, valid until the next call; null when it cannot be read.
    const IniDocument* Open(const std::string& path) {
        Files& files = CurrentFiles();
        FileStamp stamp;
        if (!files.Stamp(path, stamp)) return nullptr;
        const auto found = std::find_if(m_kept.begin(), m_kept.end(), [&](const Kept& kept) {
            return kept.service == &files && kept.path == path;
        });
        if (found != m_kept.end()) {
            m_kept.splice(m_kept.begin(), m_kept, found);
            if (found->stamp.SameContent(stamp)) return found->document.get();
        } else {
            m_kept.push_front({&files, path, {}, nullptr});
            if (m_kept.size() > kMostKept) m_kept.pop_back();
        }
        std::string text;
        const bool read = files.ReadWhole(path, kIniMaxBytes, text).ok();
        Kept& kept = m_kept.front();
        kept.document = read ? std::make_unique<IniDocument>(std::move(text)) : nullptr;
        kept.stamp = read ? stamp : FileStamp();
        return kept.document.get();
    }

    std::mutex m_mutex;
    std::list<Kept> m_kept;  // guarded by m_mutex; the one used last comes first
};

}  // namespace

IniStore& BackendIniStore() noexcept {
    static NeverDestroyed<FilesIniStore> store;
    return *store;
}

}  // namespace brindle
