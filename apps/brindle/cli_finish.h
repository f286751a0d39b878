// The end of the tool's output, for the main function alone.
#pragma once

namespace brindle::tool {

// Writes out what is buffered. False when some result could not be written, which is then reported.
bool FinishOutput();

}  // namespace brindle::tool
