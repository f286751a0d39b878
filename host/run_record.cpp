// Records as text. Tests: run_test.cpp.
#include "host/run_record.h"

namespace brindle::host {

std::string RecordLine(const RunRecord& record) {
    return record.dump(-1, ' ', false, RunRecord::error_handler_t::replace);
}

}  // namespace brindle::host
