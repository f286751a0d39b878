// Gathers what a report on this library should say. Tests: host_text_test.cpp.
#include "brindle/library/library_info.h"

#include "brindle/library/module.h"
#include "brindle/platform/backend_info.h"
#include "brindle/platform/code_page.h"
#include "brindle/platform/ini_store.h"
#include "brindle/platform/xml_dom.h"
#include "brindle/settings/line_limit.h"
#include "brindle/variables/variable_manager.h"

namespace brindle {
namespace {

#if defined(__clang__)
constexpr const char* kCompiler = "clang " __clang_version__;
#elif defined(__GNUC__)
constexpr const char* kCompiler = "g++ " __VERSION__;
#else
constexpr const char* kCompiler = "unknown";
#endif

std::vector<LibraryLimit> Limits() {
    return {{"XML document", kXmlMaxBytes, "bytes"},
            {"XML elements inside each other", kXmlMaxDepth, "levels"},
            {"XML attributes of one element", kXmlMaxAttributes, "attributes"},
            {"XML namespace declarations in scope", kXmlMaxNamespaces, "declarations"},
            {"text with its variables resolved", VariableManager::kResolveLimit, "bytes"},
            {"command line with its fields expanded", kLineLimit, "bytes"},
            {"INI file", kIniMaxBytes, "bytes"}};
}

}  // namespace

LibraryInfo DescribeLibrary() {
    BackendInfo backend = DescribeBackend();
    LibraryInfo info;
    info.version = Module::Instance().VersionText();
    info.compiler = kCompiler;
    info.backend = std::move(backend.name);
    info.system = std::move(backend.system);
    info.codePage = CurrentCodePage().Selected();
    for (BackendPart& part : backend.parts)
        info.parts.push_back({std::move(part.service), std::move(part.library), std::move(part.version)});
    info.limits = Limits();
    return info;
}

}  // namespace brindle
