// Event lines and their reader: every key, hostile lines, every prefix, and streams without end.
#include "host/event_line.h"

#include <brindle/address/events.h>
#include <gtest/gtest.h>

#include <sstream>

#include "host/address_pattern.h"
#include "host/event_reader.h"
#include "host/event_record.h"

namespace brindle::host {
namespace {

using std::chrono::milliseconds;

TEST(EventLine, GoodLines) {
    struct Row {
        const char* line;
        const char* record;  // what DescribeEvent says of the event
    };
    const Row rows[] = {
        {R"({"kind":"state","address":"1:2:3","state":-4,"masked":true,"header":"h","cause":"c",)"
         R"("text":"t","user":"u","key":"k","keyValue":"v"})",
         R"({"event":"state","address":"0001:02:03","masked":true,"state":-4,"header":"h","cause":"c",)"
         R"("text":"t","user":"u","key":"k","keyValue":"v"})"},
        {R"({"kind":"state","object":"x","state":2147483647})",
         R"({"event":"state","address":"0009:08:07","state":2147483647})"},
        {R"({"kind":"button","object":"x","toggle":true})",
         R"({"event":"button","address":"0009:08:07","toggle":true})"},
        {R"({"kind":"button","object":"x"})", R"({"event":"button","address":"0009:08:07","toggle":false})"},
        {R"({"kind":"checkbox","object":"x","checked":true})",
         R"({"event":"checkbox","address":"0009:08:07","checked":true})"},
        {R"({"kind":"checkbox","object":"x","checked":false})",
         R"({"event":"checkbox","address":"0009:08:07","checked":false})"},
        {R"({"kind":"caption","address":"1:2:?","text":"\u00e9"})",
         "{\"event\":\"caption\",\"address\":\"0001:02:?\",\"text\":\"\xC3\xA9\"}"},
        {R"({"kind":"meter","object":"x","value":48.2})",
         R"({"event":"meter","address":"0009:08:07","value":48.2})"},
        {R"({"kind":"zone","object":"x","zone":-3})", R"({"event":"zone","address":"0009:08:07","zone":-3})"},
        {R"({"kind":"poll"})", R"({"event":"poll","address":"0009:08:07"})"},
        {R"({"kind":"unlock","object":"x"})", R"({"event":"button","address":"0009:08:07","toggle":false})"},
        {R"({"kind":"unlock","object":"x","event":"zone","zone":3})",
         R"({"event":"zone","address":"0009:08:07","zone":3})"},
        {R"({"note":"n","t":5,"kind":"poll","address":"1:1:1"})",
         R"({"event":"poll","address":"0001:01:01"})"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line);
        EventLine line;
        ASSERT_EQ(ParseEventLine(row.line, line), "");
        CStateEvent* event = MakeEvent(line, CAddressOv(9, 8, 7));
        ASSERT_TRUE(event);
        RunRecord record;
        DescribeEvent(*event, record);
        EXPECT_EQ(RecordLine(record), row.record);
        event->Release();
    }
    EventLine end;
    EXPECT_EQ(ParseEventLine(R"({"kind":"end","t":26000})", end), "");
    EXPECT_EQ(end.t, 26'000U);
    EXPECT_FALSE(MakeEvent(end, CAddressOv()));
}

TEST(EventLine, BadLinesSayWhy) {
    struct Row {
        const char* line;
        const char* why;
    };
    const Row rows[] = {
        {"", "not JSON"},
        {"{", "not JSON"},
        {"[1]", "not a JSON object"},
        {"null", "not a JSON object"},
        {"{}", "\"kind\" is missing"},
        {R"({"kind":1})", "not a kind"},
        {R"({"kind":"State"})", "not a kind"},
        {R"({"kind":"poll","adress":"1:2:3"})", "\"adress\" is unknown"},
        {R"({"kind":"poll","zone":3})", "means nothing for kind \"poll\""},
        {R"({"kind":"state","object":"x"})", "\"state\" is missing"},
        {R"({"kind":"state","state":1})", "neither"},
        {R"({"kind":"state","object":"","state":1})", "\"object\" is not"},
        {R"({"kind":"state","object":"x","state":2147483648})", "\"state\" is not"},
        {R"({"kind":"state","object":"x","state":-2147483649})", "\"state\" is not"},
        {R"({"kind":"state","object":"x","state":1.0})", "\"state\" is not"},
        {R"({"kind":"state","object":"x","state":"1"})", "\"state\" is not"},
        {R"({"kind":"state","object":"x","state":1,"masked":1})", "\"masked\" is not"},
        {R"({"kind":"state","object":"x","state":1,"text":null})", "\"text\" is not"},
        {R"({"kind":"state","address":"zz","state":1})", "\"address\" is not"},
        {R"({"kind":"poll","t":-1})", "\"t\" is not"},
        {R"({"kind":"poll","t":1.5})", "\"t\" is not"},
        {R"({"kind":"poll","t":99999999999999})", "\"t\" is not"},
        {R"({"kind":"meter","object":"x","value":1e39})", "\"value\" is not"},
        {R"({"kind":"meter","object":"x","value":1e999})", "not JSON"},
        {R"({"kind":"meter","object":"x"})", "\"value\" is missing"},
        {R"({"kind":"zone","object":"x"})", "\"zone\" is missing"},
        {R"({"kind":"checkbox","object":"x"})", "\"checked\" is missing"},
        {R"({"kind":"caption","object":"x"})", "\"text\" is missing"},
        {R"({"kind":"button","object":"x","toggle":"on"})", "\"toggle\" is not"},
        {R"({"kind":"unlock"})", "\"object\" is missing"},
        {R"({"kind":"unlock","object":"x","event":"end"})", "\"event\" is not"},
        {R"({"kind":"unlock","object":"x","event":"zone"})", "\"zone\" is missing"},
        {R"({"kind":"unlock","object":"x","zone":1})", "means nothing"},
        {R"({"kind":"end","object":"x"})", "means nothing"},
        {R"({"kind":"poll","note":5})", "\"note\" is not"},
        {"{\"kind\":\"poll\",\"user\":\"\xFF\"}", "not JSON"},
        {R"({"kind":"poll"} x)", "not JSON"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line);
        EventLine line;
        const std::string why = ParseEventLine(row.line, line);
        EXPECT_NE(why.find(row.why), std::string::npos) << why;
    }
    EventLine line;
    EXPECT_EQ(ParseEventLine(std::string(60'000, '['), line), "is not JSON") << "deep nesting does no harm";
}

TEST(EventLine, NoPrefixOfALineIsOne) {
    const std::string text =
        R"({"t":9000,"kind":"state","address":"0003:01:00","state":3,"masked":false,"header":"Out\u00e9","user":""})";
    EventLine line;
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_NE(ParseEventLine(text.substr(0, length), line), "") << length;
    EXPECT_EQ(ParseEventLine(text, line), "");
}

TEST(EventReader, PassesOverBlankLinesAndCountsAll) {
    std::istringstream input("\xEF\xBB\xBF{\"kind\":\"poll\"}\r\n\n  \t\nbad\n{\"kind\":\"end\"}");
    EventReader reader(input, "f");
    EventItem item = reader.Next({}).value();
    EXPECT_EQ(item.what, EventItem::kEvent);
    EXPECT_EQ(item.line, 1U);
    item = reader.Next({}).value();
    EXPECT_EQ(item.what, EventItem::kProblem);
    EXPECT_EQ(item.problem.Place(), "f:4");
    item = reader.Next({}).value();
    EXPECT_EQ(item.event.kind, EventKind::kEnd) << "the last line needs no line end";
    EXPECT_EQ(reader.Next({}).value().what, EventItem::kEnd);
    EXPECT_EQ(reader.Next({}).value().what, EventItem::kEnd);
}

TEST(EventReader, LongLinesArePassedOver) {
    const std::string good = "{\"kind\":\"poll\"}";
    std::string longest = good;
    longest.insert(1, EventReader::kLongestLine - good.size(), ' ');
    std::istringstream input(longest + "\n" + longest + " \n" + good);
    EventReader reader(input, "f");
    EXPECT_EQ(reader.Next({}).value().what, EventItem::kEvent) << "exactly the limit";
    const EventItem tooLong = reader.Next({}).value();
    EXPECT_EQ(tooLong.what, EventItem::kProblem);
    EXPECT_NE(tooLong.problem.text.find("longer than 65536"), std::string::npos);
    EXPECT_EQ(reader.Next({}).value().line, 3U);
}

TEST(BackgroundReader, GivesTheSameItems) {
    std::string lines;
    for (int i = 0; i < 1000; ++i) lines += "{\"kind\":\"poll\",\"t\":" + std::to_string(i) + "}\n";
    static auto& input = *new std::istringstream(lines);  // the reading thread may outlive this test
    BackgroundReader reader(input, "f");
    std::uint64_t expected = 0;
    for (;;) {
        const auto item = reader.Next(milliseconds(10'000));
        ASSERT_TRUE(item);
        if (item->what == EventItem::kEnd) break;
        ASSERT_EQ(item->event.t, expected++);
    }
    EXPECT_EQ(expected, 1000U);
    EXPECT_EQ(reader.Next({}).value().what, EventItem::kEnd);
}

}  // namespace
}  // namespace brindle::host
