// The timer runs during waits, and on while the run is busy: should a dialog open, it goes off in the dialog's loop.
// Tests: map_window_test.cpp, map_dialog_test.cpp.
#include "apps/brindle-map/map_pace.h"

#include <brindle/platform/clock.h>
#include <brindle/util/run_loop.h>

#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

#include <algorithm>
#include <limits>
#include <utility>

namespace brindle::map {
namespace {

constexpr std::uint64_t kLongest = 1'000;  // the clock of the map goes on
constexpr std::uint64_t kBusy = 50;        // until the first turn in a dialog that an action opens
constexpr std::uint64_t kEnding = 5;       // between one dialog that is ended and the next

// Ends the loop of the menu or the dialog in front.
void EndInFront() {
    if (QWidget* const menu = QApplication::activePopupWidget()) {
        menu->close();
        return;
    }
    const QPointer<QWidget> front = QApplication::activeModalWidget();
    if (auto* const dialog = qobject_cast<QDialog*>(front.data())) {
        dialog->reject();
        if (front && front->isVisible()) dialog->done(QDialog::Rejected);  // it does not say no to the end
    } else if (front) {
        front->close();
    }
}

}  // namespace

class MapPace::Bell final : public QObject {
  public:
    explicit Bell(MapPace& pace) : m_pace(pace) {}
    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        m_pace.m_rung = false;
        m_pace.GoOn();
        return true;
    }

  private:
    MapPace& m_pace;
};

MapPace::MapPace() : m_start(CurrentClock().MonotonicMilliseconds()), m_bell(std::make_unique<Bell>(*this)) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_timer, &QTimer::timeout, m_bell.get(), [this] { GoOn(); });
}

MapPace::~MapPace() = default;

std::uint64_t MapPace::Elapsed() {
    return CurrentClock().MonotonicMilliseconds() - m_start;
}

std::uint64_t MapPace::EarliestOf(std::uint64_t elapsed) const {
    if (m_between) elapsed = std::min(elapsed, m_between());
    // Timers of the library tick by the desktop's loop where its services are in place, else by the plain one.
    if (const auto due = RunLoop::NextDue()) elapsed = std::min(elapsed, *due - std::min(*due, m_start));
    return elapsed;
}

void MapPace::StartTimer(std::uint64_t until) {
    const std::uint64_t now = Elapsed();
    m_timer.start(static_cast<int>(until > now ? std::min(until - now, kLongest) : 0));
}

void MapPace::WaitUntil(std::uint64_t elapsed) {
    StartTimer(EarliestOf(elapsed));
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    StartTimer(Elapsed() + kBusy);
    RunLoop::RunDue();
    if (m_between) m_between();
}

void MapPace::Wake() noexcept {
    if (!m_rung.exchange(true)) QCoreApplication::postEvent(m_bell.get(), new QEvent(QEvent::User));
}

void MapPace::SetTurn(Turn turn) {
    m_turn = std::move(turn);
    m_level = QThread::currentThread()->loopLevel();
    if (m_turn)
        StartTimer(Elapsed() + kBusy);
    else
        m_timer.stop();
}

bool MapPace::IsInside() const {
    return QThread::currentThread()->loopLevel() > m_level;
}

// In somebody else's loop a turn of the run; elsewhere the wait itself comes back.
void MapPace::GoOn() {
    if (!m_turn || !IsInside()) return;
    StartTimer(Elapsed() + kBusy);  // a dialog may open in the turn
    RunLoop::RunDue();
    const auto next = m_turn();
    if (!next) {
        EndInFront();
        return StartTimer(Elapsed() + kEnding);
    }
    StartTimer(EarliestOf(*next));
}

}  // namespace brindle::map
