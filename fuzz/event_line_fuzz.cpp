// Event lines: whatever bytes a recording holds, reading a line ends in an event or a reason, and an event that
// was read can be made, replicated and described.
#include <cstdint>
#include <string_view>

#include "host/event_line.h"
#include "host/event_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace brindle::host;
    EventLine line;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (!ParseEventLine(text, line).empty()) return 0;
    CStateEvent* event = MakeEvent(line, CAddressOv());
    if (!event) return line.kind == EventKind::kEnd ? 0 : 1;
    CCommandEvent* copy = event->Replicate();
    RunRecord record;
    DescribeEvent(*static_cast<CStateEvent*>(copy), record);
    const std::string shown = RecordLine(record);
    copy->Release();
    event->Release();
    return shown.empty() ? 1 : 0;
}
