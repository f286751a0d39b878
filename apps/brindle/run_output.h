// How `brindle run` shows a run: as JSON lines, as columns for people, or only as its difference from a file of
// expected lines. Warnings go to the standard error in every form.
#pragma once

#include <string>
#include <vector>

#include "host/expected_lines.h"
#include "host/run_text.h"

namespace brindle::tool {

// Common to all forms. A live run shows every line at once; one on the virtual clock is faster without.
class RunOutput : public host::RunSink {
  public:
    explicit RunOutput(bool live) : m_live(live) {}
    virtual ~RunOutput() = default;
    void Warn(const host::Problem& problem) override;
    bool IsClosed() const override;

  protected:
    void PrintLine(const std::string& utf8) const;

  private:
    bool m_live;
};

class JsonOutput final : public RunOutput {
  public:
    using RunOutput::RunOutput;
    void Write(const host::RunRecord& record) override;
};

class TextOutput final : public RunOutput {
  public:
    TextOutput(bool live, const host::Site& site);
    void Write(const host::RunRecord& record) override;

  private:
    host::RunText m_text;
};

class ExpectOutput final : public RunOutput {
  public:
    // Reads the file; throws Failure when it is none of JSON lines.
    explicit ExpectOutput(const std::string& file);
    void Write(const host::RunRecord& record) override { m_actual.push_back(record); }
    // Prints how the run differs from the file; false when it does.
    bool Compare() const;

  private:
    std::string m_file;
    std::vector<host::ExpectedLine> m_expected;
    std::vector<host::RunRecord> m_actual;
};

}  // namespace brindle::tool
