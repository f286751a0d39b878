// The application object of tests that need Qt's fonts; made once, on the offscreen platform.
#pragma once

namespace brindle::testing {

void NeedQtApplication();

}  // namespace brindle::testing
