// SysCreate: makes the behaviours of a new system out of a template.
//
// A template is a behaviour list. Its "Get SNMP" actions that mention "%OBJFLD%" or "%OBJVAL%" are multiplied into
// one action for each field and value; its mask actions name combinations of units and headers. Beside the
// expanded list comes a results list, which names every value the new system will deliver; it is read back as
// the triggers of virtual alarms.
//
//     SysCreate create;
//     const CStringA list = create.ExpandXML(templateXml, &fields, &values);
//     create.CreateVirtualAlarmTriggerList(create.ResultInfo());
//     SvirtAlarmTrigData alarm;
//     while (create.GetNextVirtualAlarmTrigger(alarm)) SetUp(alarm);
//
// Texts are bytes in the ANSI code page, the documents too: these declare no encoding, so whoever writes one to a
// file converts it to UTF-8 (TextToSystem in brindle/library/host_text.h). The action and trigger types are those
// registered with CCommandActionList and CCommandTriggerList; what an action is, its GetText(1) says.
//
// Limits: a template larger or deeper than XMLReader takes, an expansion to more than 1,000,000 results or to
// documents that would take more than about 4 GiB of memory is refused as a whole.
// Failure: nothing throws but where it is said, and except what the registered types throw, which passes through
// with this object as it was (the mask table may have gained entries). Thread: one at a time, the engine's.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

#include "brindle/framework/array.h"
#include "brindle/framework/export.h"
#include "brindle/framework/map.h"
#include "brindle/framework/result.h"
#include "brindle/framework/string_a.h"
#include "brindle/syscreate/virt_alarm_trig_data.h"
#include "brindle/xml/xml_reader.h"

using CMapStringToInt = CMap<CStringA, const CStringA&, int, int>;

class BRINDLE_API SysCreate {
  public:
    static constexpr std::size_t kMaxResults = 1'000'000;
    // Told from time to time how many results there are so far.
    using Progress = std::function<void(std::size_t results)>;

    // No result info, an empty mask table.
    SysCreate();
    // A copy has the same result info and shares the mask table: what one expands is in the other's table too. The
    // table lives as long as one of them. Copying while a results list is being read is harmless, but both then
    // share the place in it.
    SysCreate(const SysCreate& other);
    SysCreate& operator=(const SysCreate& other);
    virtual ~SysCreate();

    // The expanded behaviour list; the results list becomes the result info. Values beyond the fields are ignored;
    // null arrays are empty. An unparsable template, one without "BehaviourList", one over a limit, and texts that
    // XML cannot hold give the empty document and an empty "ResultsList".
    // Throws std::invalid_argument at the first field without a value: the result info is then as it was, and the
    // mask table has the combinations of the mask actions before the one that was being replicated.
    // Kept: the mask table is never cleared, it grows over all expansions.
    CStringA ExpandXML(CStringA templateXml, const CStringArray* fields, const CStringArray* values);
    // The same for tools: says why there is no expansion, with the place in the template where there is one.
    // `expanded` is what ExpandXML returns. Throws as it does.
    brindle::Result ExpandPositioned(const CStringA& templateXml, const CStringArray& fields,
                                     const CStringArray& values, CStringA& expanded,
                                     const Progress& progress = {});

    // The results list of the last expansion, or of the last CreateResultsForStringsOfFields.
    CStringA ResultInfo() const;

    // A results list with one caption result for each "#name#" of the text, a "#" without partner ends it. It
    // becomes the result info. Empty for more than 1,000,000 of them and for texts that XML cannot hold.
    CStringA CreateResultsForStringsOfFields(CStringA unit, CStringA text);

    // Whether the text needs formatting for each object by itself: it has a field of command lines, a "#" pair or
    // a "{" with a later "}". Kept: "%h", "%v", "%n" and "%q" alone do not count.
    bool ContainsDynamicField(const CStringA& s) const;

    // Whether `found` holds combinations (unit text and header text put together, value 1) that no expansion
    // produced.
    bool CheckMaskResults(const CMapStringToInt& found) const;

    // Begins to read a results list. False, with nothing to read, when it is not well-formed or no "ResultsList".
    bool CreateVirtualAlarmTriggerList(CStringA resultsXml);
    // The next result; false, with only the three flags cleared, when there is none left. A result without a
    // "Type", as "Get SNMP" actions make them, fills only unit and header: `type` stays what it was.
    bool GetNextVirtualAlarmTrigger(SvirtAlarmTrigData& record);

  protected:
    // Adds "DD:MM:YYYY hh:mm:ss   text" with a carriage return and a line feed, in local time. The file is made
    // when missing and emptied first when longer than 512,000 bytes. Lines of several processes neither mix nor
    // get lost. A file that cannot be opened is skipped silently; nulls read as "".
    // Kept: the date is written with colons; stored: do not change.
    void AppendLog(const char* file, const char* text);

  private:
    friend struct SysCreateLayout;

    XMLReader m_results;
    std::shared_ptr<CMapStringToInt> m_masks;  // unit followed by header -> 1
    CStringA m_resultInfo;
};
