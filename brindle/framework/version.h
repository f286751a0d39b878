// The version a host is compiled against; brindle::Module tells that of the library it runs with. The same major
// version means that the library runs hosts compiled against it with the same or an older minor version.
#pragma once

#define BRINDLE_VERSION_MAJOR 1
#define BRINDLE_VERSION_MINOR 0
#define BRINDLE_VERSION_PATCH 0
#define BRINDLE_VERSION_TEXT "1.0.0"

// One number to compare with: 1.2.3 is 10203.
#define BRINDLE_VERSION (BRINDLE_VERSION_MAJOR * 10000 + BRINDLE_VERSION_MINOR * 100 + BRINDLE_VERSION_PATCH)
