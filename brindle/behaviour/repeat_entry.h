// RepeatEntry: one pending repeat of a behaviour list.
#pragma once

#include <cstdint>

class CCommandAction;
class CCommandEvent;
class CCommandTrigger;
class VariableManager;

struct RepeatEntry {
    const CCommandTrigger* trigger;    // started it; not owned
    const CCommandEvent* event;        // what it runs for; the entry holds one reference
    const CCommandAction* action;      // what runs; not owned
    const VariableManager* variables;  // scope to run with, or null; not owned
    int period;                        // milliseconds between runs; at its top also any that are more
    std::uint64_t due;                 // next run, milliseconds since 1601-01-01 UTC
};
