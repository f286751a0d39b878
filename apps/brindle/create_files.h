// The files of brindle create: documents in the code page, lists of pairs, results.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brindle::tool {

struct FieldValue {
    std::string field;
    std::string value;
};

// The text of an XML document as bytes in the code page. Throws Failure with the place when it cannot be read, is not
// well-formed or its root is not `root`; characters without a byte are warned of.
std::string ReadDocument(const std::string& file, const char* root);
// The records of a CSV file with two columns, which `columns` names for messages. Throws Failure.
std::vector<FieldValue> ReadPairs(const std::string& file, const char* columns);
// Writes a text in the code page as UTF-8, whole or not at all. Throws Failure.
void WriteDocument(const std::string& file, std::string_view bytes);

}  // namespace brindle::tool
