#include "brindle/platform/fake/desktop_fake.h"

namespace brindle {

bool FakeDesktop::ChooseFile(const FileBoxRequest& request, std::string& file) {
    requests.push_back(request);
    if (error != 0 || !choice) return false;
    file = *choice;
    return true;
}

unsigned long FakeDesktop::FileBoxError() {
    ++errorsAsked;
    return error;
}

}  // namespace brindle
