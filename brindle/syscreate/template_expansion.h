// TemplateExpansion: one expansion of a template, from its text to the two documents. Internal; a walk over the
// template that writes the output as it goes. Tests: sys_create_test.cpp.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "brindle/framework/array.h"
#include "brindle/framework/result.h"
#include "brindle/syscreate/results_document.h"
#include "brindle/syscreate/sys_create.h"
#include "brindle/xml/xml_reader.h"
#include "brindle/xml/xml_writer.h"

class CCommandAction;

namespace brindle {

inline constexpr const char* kFieldPlaceholder = "%OBJFLD%";
inline constexpr const char* kValuePlaceholder = "%OBJVAL%";

// What an expansion may make.
struct ExpansionLimits {
    std::uint64_t results = SysCreate::kMaxResults;
    std::uint64_t bytes = std::uint64_t{4} << 30;  // of memory, estimated
};

class TemplateExpansion {
  public:
    // All but the limits are borrowed.
    TemplateExpansion(const CStringArray& fields, const CStringArray& values, CMapStringToInt& masks,
                      const SysCreate::Progress& progress, const ExpansionLimits& limits = {});

    // The two documents; on a failure the empty ones. Throws std::invalid_argument for a field without a value.
    Result Run(const CStringA& templateXml, CStringA& expanded, CStringA& results);

  private:
    Result Expand(const CStringA& templateXml);
    void ExpandBehaviour();
    void ExpandAction(const CStringA& elementName);
    void Replicate(CCommandAction& action, const std::string& markup);
    void MaskUnits();
    void MaskHeaders(const std::string& markup);
    void AddMask(std::string_view unit, std::string_view header);
    void ReportProgress();
    // Counts what is about to be made; false, with the failure set, when it is too much.
    bool Afford(std::uint64_t results, std::uint64_t bytes);
    void Fail(ErrorCode code, std::string why);

    const CStringArray& m_fields;
    const CStringArray& m_values;
    CMapStringToInt& m_masks;
    const SysCreate::Progress& m_progress;
    ExpansionLimits m_limits;
    XMLReader m_reader;
    XMLWriter m_output;
    ResultsDocument m_results;
    Result m_failure;
    std::uint64_t m_bytes = 0;
};

}  // namespace brindle
