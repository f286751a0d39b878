// Expands any template and reads any text as a results list. What an expansion returns is well-formed, can be expanded
// again, and every result it reports is read back; an expansion comes out the same twice.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <brindle/behaviour/behaviour_list.h>
#include <brindle/syscreate/sys_create.h>
#include <brindle/xml/xml_reader.h>

#include "host/register_types.h"

namespace {

void Require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "system creation: %s\n", what);
    std::abort();
}

std::size_t CountResults(SysCreate& create, const CStringA& results) {
    std::size_t count = 0;
    SvirtAlarmTrigData record;
    if (!create.CreateVirtualAlarmTriggerList(results)) return 0;
    while (create.GetNextVirtualAlarmTrigger(record)) ++count;
    Require(!create.GetNextVirtualAlarmTrigger(record), "a result behind the last");
    return count;
}

std::size_t Occurrences(const std::string& text, const char* part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

CStringArray Pair(const char* first, const char* second) {
    CStringArray array;
    array.Add(first);
    array.Add(second);
    return array;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    brindle::host::RegisterHostTypes();
    const CStringA text(std::string(reinterpret_cast<const char*>(data), size).c_str());
    const CStringArray fields = Pair("F1 %OBJVAL%", "--><x k=\"");
    const CStringArray values = Pair("]]>", "V2 \xFC\x80");
    SysCreate create;
    CStringA list;
    const brindle::Result result = create.ExpandPositioned(text, fields, values, list);
    const CStringA results = create.ResultInfo();
    SysCreate again;
    Require(again.ExpandXML(text, &fields, &values) == list && again.ResultInfo() == results,
            "came out differently the second time");
    CountResults(create, text);
    create.CreateResultsForStringsOfFields(text, text);
    static_cast<void>(create.ContainsDynamicField(text));
    if (!result.ok()) return 0;
    XMLReader reader;
    CStringA unused;
    if (!reader.LoadFromString(list, unused)) {
        Require(list.str().size() > (1u << 16),
                "what was expanded is not well-formed");  // or over a reader's limit
        return 0;
    }
    CCommandBehaviourList loaded(CCommandTrigger::eHostSystem);
    loaded.Load(reader);
    Require(CountResults(again, results) == Occurrences(results.str(), "<Result "),
            "a result was not read back");
    return 0;
}
