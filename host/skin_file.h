// SkinFile: the skin of a running site.
#pragma once

#include <brindle/skin/ov_skin.h>

#include "host/reloaded_file.h"

namespace brindle::host {

// Loads a site's skin. There is always one: the built-in skin stands in for a file that cannot be loaded or is no
// skin, and for an empty path. The problem then says so.
OVSkin LoadSiteSkin(const std::string& path, Problems& problems);

class SkinFile final : public ReloadedFile {
  public:
    using ReloadedFile::ReloadedFile;
    void Read(Problems& problems) override;
    void TakeOver(RunState& state) override;

  private:
    OVSkin m_fresh;
};

}  // namespace brindle::host
