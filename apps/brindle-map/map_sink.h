// MapSink: what a run with a map reports goes to the map; warnings go to the standard error.
#pragma once

#include <functional>

#include "host/map_view.h"
#include "host/run_record.h"

namespace brindle::map {

class MapSink final : public host::RunSink {
  public:
    // `warn` tells people; `seen` is called behind each record, `closed` asked whether the run should stop. Both may be
    // empty. The view is borrowed.
    MapSink(host::MapView& view, std::function<void(const host::Problem&)> warn)
        : m_view(view), m_warn(std::move(warn)) {}

    std::function<void(const host::RunRecord&)> seen;
    std::function<bool()> closed;

    void Write(const host::RunRecord& record) override {
        m_view.Take(record);
        if (seen) seen(record);
    }
    void Warn(const host::Problem& problem) override { m_warn(problem); }
    bool IsClosed() const override { return closed && closed(); }

  private:
    host::MapView& m_view;
    std::function<void(const host::Problem&)> m_warn;
};

}  // namespace brindle::map
