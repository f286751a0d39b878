// RunRecord: one thing that happened in a run, as the JSON object that `brindle run --json` prints.
// docs/sites.md lists the kinds and their keys. Texts in it are UTF-8.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/problem.h"

namespace brindle::host {

using RunRecord = nlohmann::ordered_json;  // keys stay in the order they were given

// The record as one line of text without a line end.
std::string RecordLine(const RunRecord& record);

// Receives what happens, in order.
class RunSink {
  public:
    virtual void Write(const RunRecord& record) = 0;
    // A line of the recording that is no event, or another thing a person should know about an input.
    virtual void Warn(const Problem& problem) = 0;
    // Whether the run should stop because nobody reads it any more.
    virtual bool IsClosed() const { return false; }

  protected:
    ~RunSink() = default;  // never destroyed through this interface
};

}  // namespace brindle::host
