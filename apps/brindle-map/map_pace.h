// MapPace: how time passes in a run with a window: as it does outside, and while the run waits the desktop's events are
// handled.
#pragma once

#include <QtCore/QTimer>

#include <functional>

#include "host/run_pace.h"

class QAbstractEventDispatcher;

namespace brindle::map {

class MapPace final : public host::RunPace {
  public:
    // There is an application object.
    MapPace();

    // Called at the beginning and at the end of every wait; tells until when a wait may last at most, in milliseconds
    // of the run.
    void SetBetween(std::function<std::uint64_t()> between) { m_between = std::move(between); }

    std::uint64_t Elapsed() override;
    void WaitUntil(std::uint64_t elapsed) override;
    bool IsReal() const noexcept override { return true; }
    void Wake() noexcept override;

  private:
    std::uint64_t m_start;
    QAbstractEventDispatcher* m_dispatcher;  // of this thread
    QTimer m_timer;
    std::function<std::uint64_t()> m_between;
};

}  // namespace brindle::map
