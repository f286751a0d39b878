// Command-line formatting, compared with the plain chain of replacements.
//
// Input: one byte of switches, then lines: the command line, path, caption, text, help, r. A line that is "-" is an
// absent argument.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "brindle/address/address_ov.h"
#include "brindle/macro/brindle_data.h"
#include "brindle/macro/command_line.h"
#include "brindle/macro/date_tokens.h"
#include "brindle/platform/clock.h"
#include "testing/slow_format.h"

using brindle::testing::SlowFormat;

namespace {

constexpr std::int64_t kNow = 1'772'332'506;

class StillClock final : public brindle::Clock {
  public:
    std::uint64_t SystemTicks() override {
        return static_cast<std::uint64_t>(kNow + 11'644'473'600) * 10'000'000;
    }
    std::uint64_t MonotonicMilliseconds() override { return 0; }
    bool ToLocalTime(std::int64_t unixSeconds, brindle::LocalTime& out) override {
        out = brindle::BreakDownUtc(unixSeconds);
        return true;
    }
    brindle::TimeZone StandardZone() override { return {}; }
};

class EchoData final : public IBrindleData {
  public:
    int GetAddressStatus(const FullAddress_t*) override { return 2; }
    CStringA GetHashFieldValue(const FullAddress_t*, const char* name) override {
        return CStringA("<") + name + ">";
    }
    void WriteCommandLog(const char*) override {}
    int SelectActions(CCommandBehaviourList&, int, brindle::eHostType) override { return 0; }
};

std::string TakeLine(std::string_view& input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    std::string line(input.substr(0, end));
    input.remove_prefix(std::min(end + 1, input.size()));
    std::erase(line, '\0');  // arguments end at a zero byte
    return line;
}

SlowFormat::Text TakeArgument(std::string_view& input) {
    std::string line = TakeLine(input);
    if (line == "-") return std::nullopt;
    return line;
}

const char* OrNull(const SlowFormat::Text& text) {
    return text ? text->c_str() : nullptr;
}

std::string EchoOf(const std::string& body) {
    const std::size_t comma = body.find(',');
    const bool addressed =
        comma != std::string::npos && CAddressOv().SetAddress(body.substr(0, comma).c_str()) != 0;
    return "<" + (addressed ? body.substr(comma + 1) : body) + ">";
}

// How often arguments that name each other can multiply. Beyond the library's limit the two would part.
std::size_t Growth(const std::string& line, const SlowFormat& slow) {
    const auto fields = [](const std::string& text) {
        return 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '%'));
    };
    std::size_t growth = fields(line);
    for (const SlowFormat::Text* text : {&slow.path, &slow.caption, &slow.text, &slow.help, &slow.r})
        growth *= fields(text->value_or(""));
    return growth;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0 || size > 400) return 0;
    static StillClock clock;
    static EchoData host;
    brindle::SetClock(&clock);
    const unsigned switches = data[0];
    std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);

    SlowFormat slow;
    const brindle::LocalTime now = brindle::BreakDownUtc(kNow);
    for (std::size_t i = 0; i < slow.dates.size(); ++i)
        slow.dates[i] = brindle::DateText(brindle::kDateTokens[i], now);
    std::string line = TakeLine(input);
    slow.path = TakeArgument(input);
    slow.caption = TakeArgument(input);
    slow.text = TakeArgument(input);
    slow.help = TakeArgument(input);
    slow.r = TakeArgument(input);
    slow.status = static_cast<int>(switches & 3);
    if (switches & 4) slow.n = 5;
    if (switches & 8) slow.q = 6;
    if (switches & 16) slow.address = SlowFormat::Address{1, 2, 3};
    if (switches & 32) {
        slow.addressStatus = 2;
        slow.hash = &EchoOf;
    }
    if (Growth(line, slow) > 100'000) return 0;
    RegisterIBrindleData(switches & 32 ? &host : nullptr);
    const FullAddress_t address = {1, 2, 3};
    CStringA fast = line;
    FormatCommandLineEx(fast, slow.address ? &address : nullptr, OrNull(slow.path), OrNull(slow.caption),
                        OrNull(slow.text), OrNull(slow.help), slow.status, OrNull(slow.r), slow.n, slow.q);
    slow.Run(line);
    if (fast.str() != line) std::abort();
    return 0;
}
