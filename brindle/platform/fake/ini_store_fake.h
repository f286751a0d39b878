// FakeIniStore: INI files in memory by the path they are asked by, with switches for faults.
#pragma once

#include <map>
#include <string>

#include "brindle/platform/ini_store.h"

namespace brindle {

class FakeIniStore final : public IniStore {
  public:
    std::size_t Read(const char* section, const char* key, const char* defaultValue, char* buffer,
                     std::size_t size, const char* file) override;
    Result Write(const char* section, const char* key, const char* value, const char* file) override;

    void SetText(const std::string& file, std::string text) { m_texts[file] = std::move(text); }
    // The file's text, or null when there is none.
    const std::string* Text(const std::string& file) const;
    // Every write fails.
    void FailWrites(bool fail) noexcept { m_failWrites = fail; }
    int Reads() const noexcept { return m_reads; }

  private:
    std::map<std::string, std::string> m_texts;
    bool m_failWrites = false;
    int m_reads = 0;
};

}  // namespace brindle
