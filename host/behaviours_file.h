// BehavioursFile: the behaviour list file of one or several objects of a running site.
//
// Behaviours whose saved text did not change stay, with their repeats and with what their triggers remember, in the
// order of the new file; of several alike the first ones stay. The others end, and their repeats with them. New ones
// begin as at the start of a run, which arms their schedules.
#pragma once

#include <memory>
#include <vector>

#include "host/reloaded_file.h"

namespace brindle::host {

class BehavioursFile final : public ReloadedFile {
  public:
    using ReloadedFile::ReloadedFile;
    void AddObject(SiteObject& object) { m_objects.push_back(&object); }

    void Read(Problems& problems) override;
    void TakeOver(RunState& state) override;

  private:
    std::vector<SiteObject*> m_objects;
    std::vector<std::unique_ptr<CCommandBehaviourList>> m_fresh;  // one for each object
};

}  // namespace brindle::host
