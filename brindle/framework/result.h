// Result: how a failure travels inside the library: a code, a text that names what and why, and a place in
// the input where there is one. Exported functions turn it into their bool or int once, at the edge. Thread: any; a
// value.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace brindle {

enum class ErrorCode {
    kNone,
    kInvalidArgument,
    kNotFound,
    kAccess,
    kNotWellFormed,
    kLimit,        // an input is larger, deeper or longer than the documented limit
    kUnsupported,  // the service is absent, or cannot do this
    kFailed,       // anything else; the text says what
};

struct Result {
    ErrorCode code = ErrorCode::kNone;
    std::string text;          // empty on success; UTF-8 free: plain ASCII plus the bytes of names
    std::uint32_t line = 0;    // from 1; 0: no place
    std::uint32_t column = 0;  // from 1; 0: no place

    bool ok() const noexcept { return code == ErrorCode::kNone; }
    static Result Error(ErrorCode code, std::string text, std::uint32_t line = 0, std::uint32_t column = 0) {
        return {code, std::move(text), line, column};
    }
};

}  // namespace brindle
