// MapPace: how time passes in a run with a window: as it does outside, and while the run waits the desktop's events are
// handled. While a dialog or a menu runs a loop of its own, inside a wait or inside an action, the run goes on from
// there, and the window is kept up to date; when the run is over, those loops are ended.
#pragma once

#include <QtCore/QTimer>

#include <atomic>
#include <functional>
#include <memory>

#include "host/run_pace.h"

namespace brindle::map {

class MapPace final : public host::RunPace {
  public:
    // There is an application object.
    MapPace();
    MapPace(const MapPace&) = delete;
    MapPace& operator=(const MapPace&) = delete;
    ~MapPace();

    // Called at the beginning and at the end of every wait; tells until when a wait may last at most, in milliseconds
    // of the run.
    void SetBetween(std::function<std::uint64_t()> between) { m_between = std::move(between); }

    std::uint64_t Elapsed() override;
    void WaitUntil(std::uint64_t elapsed) override;
    bool IsReal() const noexcept override { return true; }
    void Wake() noexcept override;
    void SetTurn(Turn turn) override;

  private:
    class Bell;
    // The moment, or an earlier one at which there is something else to do.
    std::uint64_t EarliestOf(std::uint64_t elapsed) const;
    void StartTimer(std::uint64_t until);
    bool IsInside() const;
    void GoOn();

    std::uint64_t m_start;
    std::unique_ptr<Bell> m_bell;  // hears of Wake
    std::atomic<bool> m_rung{false};
    QTimer m_timer;
    std::function<std::uint64_t()> m_between;
    Turn m_turn;
    int m_level = 0;  // of event loops, where the run was begun
};

}  // namespace brindle::map
