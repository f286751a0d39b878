#include "testing/vectors.h"

#include <fstream>
#include <iterator>

namespace brindle::testing {

std::optional<std::string> LoadVectorBytes(const std::string& fileName) {
    const std::string folder = BRINDLE_VECTORS;
    if (folder.empty()) return std::nullopt;
    std::ifstream file(folder + "/" + fileName, std::ios::binary);
    if (!file) return std::nullopt;
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::optional<nlohmann::json> LoadVectors(const std::string& fileName) {
    const auto bytes = LoadVectorBytes(fileName);
    if (!bytes) return std::nullopt;
    return nlohmann::json::parse(*bytes);
}

std::string BytesOf(const nlohmann::json& narrow) {
    const std::string utf8 = narrow.get<std::string>();
    std::string bytes;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        if (lead < 0x80) {
            bytes += utf8[i];
        } else {  // U+0080 to U+00FF: two bytes
            const auto tail = static_cast<unsigned char>(utf8.at(++i));
            bytes += static_cast<char>(((lead & 0x03) << 6) | (tail & 0x3F));
        }
    }
    return bytes;
}

}  // namespace brindle::testing
