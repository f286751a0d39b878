// The module object: what the library says about itself. It exists from the moment the library is loaded. Thread:
// any; nothing in it changes.
#pragma once

#include "brindle/framework/export.h"

namespace brindle {

// The three numbers of a version.
struct ModuleVersion {
    int major;
    int minor;
    int patch;
};

// The library as it is loaded.
class BRINDLE_API Module {
  public:
    const char* Name() const noexcept { return m_name; }
    // "1.0.0"; never null, valid until the process ends.
    const char* VersionText() const noexcept { return m_versionText; }
    ModuleVersion Version() const noexcept { return m_version; }

    // The one object of the process; never destroyed. Thread: any.
    static const Module& Instance() noexcept;

  private:
    constexpr Module(const char* name, const char* versionText, ModuleVersion version) noexcept
        : m_name(name), m_versionText(versionText), m_version(version) {}

    const char* m_name;
    const char* m_versionText;
    ModuleVersion m_version;
};

}  // namespace brindle
