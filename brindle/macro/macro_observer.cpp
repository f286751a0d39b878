#include "brindle/macro/macro_observer.h"

#include <utility>

#include "brindle/macro/macro_slots.h"

void IMacroObserver::OnMacro(const char*, const char*) {}
void IMacroObserver::OnSearchPath(const char*, const char*) {}
void IMacroObserver::OnPass(int, const char*) {}
void IMacroObserver::OnEndless(const char*) {}
void IMacroObserver::OnCandidate(const char*, bool) {}
void IMacroObserver::OnCommand(const char*) {}

IMacroObserver* RegisterMacroObserver(IMacroObserver* observer) noexcept {
    return std::exchange(brindle::g_macroSlots.observer, observer);
}
