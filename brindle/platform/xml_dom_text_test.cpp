#include "brindle/platform/xml_dom_text.h"

#include <gtest/gtest.h>

namespace brindle {
namespace {

std::string Attributes(unsigned count, char quote = '"') {
    std::string text;
    for (unsigned i = 0; i < count; ++i) text += std::string(" a") + quote + quote;
    return text + std::string(6, ' ');
}

TEST(XmlDomTextTest, FindsTagsWithTooManyAttributes) {
    const std::string many = " x" + Attributes(kXmlMaxAttributes + 1) + Attributes(kXmlMaxAttributes);
    const std::string longMany = std::string(30000, ' ') + many;
    const struct {
        const char* label;
        std::string text;
        std::size_t offset;
    } rows[] = {
        {"nothing", "", std::string::npos},
        {"the most allowed", "<a" + std::string(30000, ' ') + Attributes(kXmlMaxAttributes) + ">",
         std::string::npos},
        {"one more", "<a" + std::string(30000, ' ') + Attributes(kXmlMaxAttributes + 1) + ">", 0},
        {"one more, single quotes",
         "<a" + std::string(30000, ' ') + Attributes(kXmlMaxAttributes + 1, '\'') + ">", 0},
        {"not closed", "<r>\n<a" + longMany, 4},
        {"quotes in text", "<a>" + longMany + "</a>", std::string::npos},
        {"> within a value", "<a k='>'" + longMany, 0},
        {"an end tag", "</a" + longMany + ">", std::string::npos},
        {"an instruction", "<?a" + longMany + "?>", std::string::npos},
        {"a second tag starts anew", "<a" + Attributes(4000) + "<b" + Attributes(4000) + ">",
         std::string::npos},
        {"one very long value", "<a k='" + std::string(100000, '"') + "'>", std::string::npos},
        {"value without an end", "<a k='" + std::string(100000, '"'), std::string::npos},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(FindAttributeFlood(row.text), row.offset);
    }
}

TEST(XmlDomTextTest, CountsLinesAndColumns) {
    XmlPlaces places("ab\nc\r\n\nd");
    const struct {
        std::size_t offset;
        std::uint32_t line;
        std::uint32_t column;
    } rows[] = {{0, 1, 1}, {1, 1, 2},  {2, 1, 3}, {3, 2, 1}, {6, 3, 1},
                {7, 4, 1}, {99, 4, 2}, {1, 1, 2}, {7, 4, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.offset);
        EXPECT_EQ(places.At(row.offset).line, row.line);
        EXPECT_EQ(places.At(row.offset).column, row.column);
    }
}

TEST(XmlDomTextTest, EscapesByKind) {
    const struct {
        XmlTextKind kind;
        const char* markup;
    } rows[] = {{XmlTextKind::kText, "<&lt;&gt;&amp;\"'\t\n&#13;"},
                {XmlTextKind::kAttribute, "<&lt;&gt;&amp;&quot;'&#9;&#10;&#13;"},
                {XmlTextKind::kVerbatim, "<<>&\"'\t\n\r"}};
    for (const auto& row : rows) {
        std::string markup = "<";
        EXPECT_TRUE(AppendXmlText("<>&\"'\t\n\r", row.kind, markup));
        EXPECT_EQ(markup, row.markup);
        EXPECT_FALSE(AppendXmlText(std::string_view("\0", 1), row.kind, markup));
    }
}

}  // namespace
}  // namespace brindle
