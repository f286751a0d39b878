// The one-pass expansion against the plain chain of replacements, on texts made to be nasty.
#include "brindle/macro/percent_fields.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>

#include "brindle/address/address_ov.h"
#include "brindle/macro/command_line.h"
#include "brindle/macro/date_tokens.h"
#include "brindle/macro/recording_data_test.h"
#include "brindle/platform/fake/clock_fake.h"
#include "brindle/platform/service.h"
#include "brindle/settings/line_limit.h"
#include "testing/slow_format.h"

namespace {

using brindle::testing::RecordingData;
using brindle::testing::ScopedData;
using brindle::testing::SlowFormat;

const char* OrNull(const SlowFormat::Text& text) {
    return text ? text->c_str() : nullptr;
}

class RandomFormat : public ::testing::Test {
  protected:
    RandomFormat() {
        m_clock.SetUnixSeconds(1'772'332'506);
        for (std::size_t i = 0; i < brindle::kDateTokens.size(); ++i) {
            brindle::LocalTime now;
            m_clock.ToLocalTime(1'772'332'506, now);
            m_dates[i] = brindle::DateText(brindle::kDateTokens[i], now);
        }
    }

    std::size_t Pick(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }

    // Pieces that touch each other in all the awkward ways.
    std::string Text(std::size_t longest) {
        static const char* const kPieces[] = {
            "%",  "%",    "%%",   "c",    "t",      "s",   "dd",           "dd%",  "%dd%",   "%MM%", "M",
            "H%", "%H%",  "%s%",  "%m%",  "%n",     "%q",  "%a",           "%N",   "%U",     "%P",   "%p",
            "%c", "%t",   "%h",   "%i",   "%j",     "%v",  "%r",           "%s",   "#",      "#",    "x",
            ".",  "\x03", "\x02", "\x01", "%yyyy%", "%z%", "\x03\x02\x01", "%ddd", "%MMMM%", ",",    "1:2:3"};
        std::string text;
        for (std::size_t i = Pick(longest + 1); i-- > 0;) text += kPieces[Pick(std::size(kPieces))];
        return text;
    }

    SlowFormat::Text Argument(bool plain) {
        if (Pick(5) == 0) return std::nullopt;
        return plain ? std::string(Pick(4), 'z') : Text(4);
    }

    SlowFormat MakeCase() {
        SlowFormat slow;
        const bool plain = Pick(3) == 0;  // the usual case: texts without fields
        if (Pick(4)) slow.address = SlowFormat::Address{1, 2, 3};
        slow.path = Argument(plain);
        slow.caption = Argument(plain);
        slow.text = Argument(plain);
        slow.help = Argument(plain);
        slow.r = Argument(plain);
        slow.status = static_cast<int>(Pick(6)) - 1;
        slow.n = static_cast<int>(Pick(3)) - 1;
        slow.q = static_cast<int>(Pick(3)) - 1;
        slow.dates = m_dates;
        return slow;
    }

    void Compare(const std::string& line, SlowFormat slow) {
        RecordingData data;
        const bool host = Pick(2) == 0;
        const ScopedData registered(host ? &data : nullptr);
        if (host) {
            data.status = static_cast<int>(Pick(5));
            slow.addressStatus = data.status;
            slow.hash = [](const std::string& body) {
                const std::size_t comma = body.find(',');
                const bool addressed =
                    comma != std::string::npos && CAddressOv().SetAddress(body.substr(0, comma).c_str()) != 0;
                return "<" + (addressed ? body.substr(comma + 1) : body) + ">";
            };
        }
        std::string expected = line;
        slow.Run(expected);
        const FullAddress_t address = {1, 2, 3};
        CStringA actual = line;
        FormatCommandLineEx(actual, slow.address ? &address : nullptr, OrNull(slow.path),
                            OrNull(slow.caption), OrNull(slow.text), OrNull(slow.help), slow.status,
                            OrNull(slow.r), slow.n, slow.q);
        ASSERT_EQ(actual.str(), expected) << line;
    }

    brindle::FakeClock m_clock;
    brindle::ScopedService<brindle::Clock> m_installed{&brindle::SetClock, m_clock};
    std::array<std::string, 11> m_dates;
    std::mt19937 m_random{20200101};
};

TEST_F(RandomFormat, AgreesWithTheChain) {
    for (int round = 0; round < 20'000; ++round) {
        SCOPED_TRACE(round);
        Compare(Text(12), MakeCase());
        if (HasFatalFailure()) return;
    }
}

TEST_F(RandomFormat, EveryPrefixAgreesWithTheChain) {
    const std::string whole =
        "%%%dd%MM% %c%H%%n %a.%p\x03\x02\x01 #1:2:3,%t# %s%s%%#N# %yyyy%MMMM%v%j%h%r%z%";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        Compare(whole.substr(0, length), MakeCase());
        Compare(whole.substr(length), MakeCase());
        if (HasFatalFailure()) return;
    }
}

// Both ways, in one pass and, for what holds a control character of the marker, by the chain.
TEST(PercentFields, FillALineUpToItsLimit) {
    const std::string fits(brindle::kLineLimit - 1, 'x');
    const std::string over = fits + "x";
    for (const std::string before : {"a", "\x03"}) {
        SCOPED_TRACE(before == "a" ? "one pass" : "chain");
        CStringA line = (before + "%c").c_str();
        FormatCommandLine(line, nullptr, nullptr, fits.c_str(), nullptr, nullptr, 0);
        EXPECT_TRUE(line.view() == before + fits) << line.GetLength();
        line = (before + "%c").c_str();
        FormatCommandLine(line, nullptr, nullptr, over.c_str(), nullptr, nullptr, 0);
        EXPECT_TRUE(line.view() == before + "%c") << line.GetLength();
    }
}

TEST(DateTokens, Ends) {
    struct Row {
        const char* line;
        std::size_t at;
        const char* field;  // null: none
    };
    const Row rows[] = {{"%dd%", 0, "%dd%"},   {"%dd%x", 0, "%dd%"}, {"a%s%b", 1, "%s%"},
                        {"%dd%%", 0, nullptr}, {"%dd", 0, nullptr},  {"%d%", 0, nullptr},
                        {"%", 0, nullptr},     {"%%", 0, nullptr},   {"%x%", 0, nullptr},
                        {"%dd%MM%", 3, "%MM%"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line);
        const brindle::DateToken* token = brindle::DateTokenAt(row.line, row.at);
        ASSERT_EQ(token != nullptr, row.field != nullptr);
        if (token) {
            EXPECT_EQ(token->field, row.field);
        }
    }
}

}  // namespace
