// PollsFile: the devices file of a running site, as far as it says how devices are polled. What else it says is read at
// the start only.
#pragma once

#include <vector>

#include "host/poll_plan.h"
#include "host/reloaded_file.h"

namespace brindle::host {

class StationPolls;

class PollsFile final : public ReloadedFile {
  public:
    // The polls are borrowed.
    PollsFile(std::string path, const HostFileMarks& known, StationPolls& polls);
    void Read(Problems& problems) override;
    void TakeOver(RunState& state) override;

  private:
    StationPolls& m_polls;
    std::vector<PollPlan> m_fresh;
};

}  // namespace brindle::host
