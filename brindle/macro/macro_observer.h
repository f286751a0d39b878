// IMacroObserver: watches how search paths and command macros are expanded. For tools that explain a line; texts are
// valid during the call only. Every operation does nothing until it is overridden. Thread: the one that expands.
#pragma once

#include "brindle/framework/export.h"

class BRINDLE_API IMacroObserver {
  public:
    // A "<name>" was looked up; `definition` is its command text, null when it is not defined.
    virtual void OnMacro(const char* name, const char* definition);
    // A "$NAME$" was looked up; `directories` is null when it is not defined.
    virtual void OnSearchPath(const char* name, const char* directories);
    // A pass over a macro part is done; `pass` counts from 1.
    virtual void OnPass(int pass, const char* text);
    // The definitions do not come to an end: the text is left as the last pass left it.
    virtual void OnEndless(const char* text);
    // A candidate was looked for; the first that exists wins.
    virtual void OnCandidate(const char* candidate, bool exists);
    // A command of a macro command line is ready, before it is started.
    virtual void OnCommand(const char* command);

  protected:
    ~IMacroObserver() = default;  // never destroyed through this interface
};

// Installs the observer (not owned; null: none) and returns the one before.
BRINDLE_API IMacroObserver* RegisterMacroObserver(IMacroObserver* observer) noexcept;
