// Arbitrary bytes as an archive of texts: what loads is never longer than what was there, and stores to bytes that
// load to the same text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "brindle/framework/archive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CArchiveMemoryStream stream(std::string(reinterpret_cast<const char*>(data), size));
    CArchive archive(stream, CArchive::load);
    try {
        while (stream.Left() > 0) {
            CStringA text;
            archive >> text;
            if (text.str().size() > size) std::abort();
            CArchiveMemoryStream copy;
            CArchive(copy, CArchive::store) << text;
            CStringA again;
            CArchive(copy, CArchive::load) >> again;
            if (again != text) std::abort();
        }
    } catch (const CArchiveException&) {  // the defined answer to damaged bytes
    }
    return 0;
}
