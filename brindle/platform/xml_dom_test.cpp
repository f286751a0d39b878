// The XML DOM's contract, over every backend.
#include "brindle/platform/xml_dom.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/platform/fake/xml_dom_fake.h"
#include "brindle/platform/service.h"

namespace brindle {
namespace {

XmlDom& FakeDom() {
    static FakeXmlDom& dom = *new FakeXmlDom;
    return dom;
}

struct Backend {
    const char* name;
    XmlDom& (*dom)();
};

class XmlDomTest : public ::testing::TestWithParam<Backend> {
  protected:
    std::shared_ptr<XmlDocument> Create() { return GetParam().dom().CreateDocument(); }
    Result Parse(std::string_view text, XmlPositions positions = XmlPositions::kNone) {
        document = Create();
        return document->Parse(text, XmlInput::kText, positions);
    }
    XmlNode* Root(std::string_view text) {
        const Result result = Parse(text);
        EXPECT_TRUE(result.ok()) << result.text;
        XmlNode* root = document->SelectSingle("/*");
        EXPECT_NE(root, nullptr);
        return root;
    }
    std::string MarkupOf(XmlNode* element) {
        std::string markup;
        EXPECT_TRUE(document->Markup(element, markup).ok());
        return markup;
    }
    std::string DocumentMarkup() {
        std::string markup;
        EXPECT_TRUE(document->DocumentMarkup(markup).ok());
        return markup;
    }
    std::string Names(XmlChildren list) {
        std::string names;
        while (XmlNode* child = document->NextElement(list))
            names += std::string(document->LocalName(child)) + " ";
        return names;
    }
    std::string Value(XmlNode* element, std::string_view name) {
        std::string buffer;
        std::string_view value = "unchanged";
        const bool found = document->FindAttribute(element, name, buffer, value);
        return found ? "=" + std::string(value) : std::string(value);
    }

    std::shared_ptr<XmlDocument> document;
};

std::string Repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    while (times-- > 0) all += text;
    return all;
}

std::string Nested(std::size_t depth) {
    return Repeated("<n>", depth) + Repeated("</n>", depth);
}

std::string WithAttributes(unsigned count) {
    std::string tag = "<a";
    for (unsigned i = 0; i < count; ++i) tag += " a" + std::to_string(i) + "=''";
    return tag + "/>";
}

TEST_P(XmlDomTest, ReadsWhatIsWellFormed) {
    const struct {
        const char* label;
        const char* text;
        const char* markup;
        const char* content;
    } rows[] = {
        {"empty, two tags", "<a></a>", "<a/>", ""},
        {"text", "<a>t</a>", "<a>t</a>", "t"},
        {"mixed", "<a>one<b>two</b>three</a>", "<a>one<b>two</b>three</a>", "onetwothree"},
        {"quotes in values", "<a x='\"' y=\"'\"/>", "<a x=\"&quot;\" y=\"'\"/>", ""},
        {"blanks around =", "<a x = \"1\"  y= '2'/>", "<a x=\"1\" y=\"2\"/>", ""},
        {"blanks in tags", "<a  ><b  /></a  >", "<a><b/></a>", ""},
        {"names", "<a-b.c_1 _x-1=\"v\"/>", "<a-b.c_1 _x-1=\"v\"/>", ""},
        {"letters beyond ASCII", "<gr\xC3\xB6\xC3\x9F/>", "<gr\xC3\xB6\xC3\x9F/>", ""},
        {"white space kept", "<a> <b/>\n</a>", "<a> <b/>\n</a>", " \n"},
        {"line ends become LF", "<a>1\r\n2\r3\n4</a>", "<a>1\n2\n3\n4</a>", "1\n2\n3\n4"},
        {"line end in an attribute", "<a x=\"1\r\n2\t3\"/>", "<a x=\"1 2 3\"/>", ""},
        {"references in an attribute", "<a x=\"&#10;&#9;&#13;\"/>", "<a x=\"&#10;&#9;&#13;\"/>", ""},
        {"CR by reference", "<a>1&#13;2</a>", "<a>1&#13;2</a>", "1\r2"},
        {"predefined entities", "<a>&lt;&amp;&gt;&quot;&apos;</a>", "<a>&lt;&amp;&gt;\"'</a>", "<&>\"'"},
        {"references", "<a>&#x41;&#xe9;&#8364;</a>", "<a>A\xC3\xA9\xE2\x82\xAC</a>", "A\xC3\xA9\xE2\x82\xAC"},
        {"beyond the base plane", "<a>&#x1F600;</a>", "<a>\xF0\x9F\x98\x80</a>", "\xF0\x9F\x98\x80"},
        {"> plain", "<a>x > y</a>", "<a>x &gt; y</a>", "x > y"},
        {"CDATA", "<a>x<![CDATA[<b>&amp;]]>z</a>", "<a>x<![CDATA[<b>&amp;]]>z</a>", "x<b>&amp;z"},
        {"CDATA with brackets", "<a><![CDATA[a[0]]]]></a>", "<a><![CDATA[a[0]]]]></a>", "a[0]]"},
        {"comment and instruction", "<a>1<!--c-->2<?t d?>3</a>", "<a>1<!--c-->2<?t d?>3</a>", "123"},
        {"instruction without data", "<a><?t?></a>", "<a><?t?></a>", ""},
        {"around the root", "<?xml version='1.0'?>\n<!--c--><a/>\n<?t?>  ", "<a/>", ""},
        {"blanks before the root", "  <a/>", "<a/>", ""},
        {"declared prefix", "<p:a xmlns:p=\"u\"><p:b/></p:a>", "<p:a xmlns:p=\"u\"><p:b/></p:a>", ""},
        {"xml prefix", "<a xml:lang=\"en\"/>", "<a xml:lang=\"en\"/>", ""},
        {"C1 control character", "<a>\xC2\x81</a>", "<a>\xC2\x81</a>", "\xC2\x81"},
        {"declared encoding ignored", "<?xml version=\"1.0\" encoding=\"x-none\"?><a>\xC3\xA9</a>",
         "<a>\xC3\xA9</a>", "\xC3\xA9"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        XmlNode* root = Root(row.text);
        if (!root) continue;
        EXPECT_EQ(MarkupOf(root), row.markup);
        EXPECT_EQ(document->Text(root), row.content);
        EXPECT_EQ(document->Position(root).line, 0u);
    }
}

TEST_P(XmlDomTest, RefusesWhatIsNot) {
    const char* const rows[] = {"",
                                "   \r\n",
                                "hello",
                                "<a/>x",
                                "<a/><b/>",
                                "<a>",
                                "<a><b></a>",
                                "<a></A>",
                                "<a></a></a>",
                                "<a x=1/>",
                                "<a x/>",
                                "<a x=\"1'/>",
                                "<a x=\"1\" x=\"2\"/>",
                                "<1a/>",
                                "<a></ a>",
                                "<a><b",
                                "<a x=\"1",
                                "<a/b/>",
                                "<a></a x=\"1\">",
                                "<?xml version=\"1.0\"?>",
                                "<!-- c -->",
                                "<a>\x01</a>",
                                "<a x=\"\x02\"/>",
                                "<a\x0Bx=\"1\"/>",
                                "<a>&#0;</a>",
                                "<a>&#xFFFF;</a>",
                                "<a>&#xD800;</a>",
                                "<a>&#;</a>",
                                "<a>x&amp y</a>",
                                "<a x=\"1&2\"/>",
                                "<a x=\"1<2\"/>",
                                "<a>&LT;</a>",
                                "<a>&e;</a>",
                                "<a><![CDATA[x</a>",
                                "<a>]]></a>",
                                "<a><!-- x -- y --></a>",
                                "<a><!-- x ---></a>",
                                "<a><!-- x</a>",
                                "<a><?xml version=\"1.0\"?></a>",
                                "<a><?t d</a>",
                                "\r\n<?xml version=\"1.0\"?><a/>",
                                "<a>\xE9</a>",
                                "<a>\xC0\x80</a>",
                                "<p:a/>",
                                "<a p:x=\"1\"/>",
                                "<a><p:b/></a>",
                                "<p:a><b xmlns:p=\"u\"/></p:a>",
                                "<!DOCTYPE a>",
                                "x<a/>",
                                "<a/>\x1A",
                                "<?xml version=\"1.0\"?",
                                "<a x=\"1\"y=\"2\"/>"};
    for (const char* row : rows) {
        SCOPED_TRACE(row);
        const Result result = Parse(row);
        EXPECT_FALSE(result.ok());
        EXPECT_FALSE(result.text.empty());
        EXPECT_EQ(document->SelectSingle("/*"), nullptr);
        EXPECT_EQ(DocumentMarkup(), "");
    }
    EXPECT_FALSE(Parse(std::string_view("<a>\0</a>", 8)).ok());
    EXPECT_FALSE(Parse(std::string_view("<a/>\0", 5)).ok());
}

TEST_P(XmlDomTest, TellsWhereAnErrorIs) {
    const Result result = Parse("<a>\n  <b>\n</a>");
    EXPECT_EQ(result.code, ErrorCode::kNotWellFormed);
    EXPECT_EQ(result.line, 3u);
    EXPECT_GT(result.column, 0u);
    const Result late = Parse("<a>" + std::string(70000, '\n') + "<b></a>");
    EXPECT_EQ(late.line, 70001u);
}

TEST_P(XmlDomTest, OnlyTheWholeOfADocumentParses) {
    const std::string whole =
        "<?xml version=\"1.0\"?><!-- c --><L xmlns:p='u' p:k=\"&lt;&#x41;\">\r\n<B Id='1'>t<![CDATA[<]]></B>"
        "<?t d?></L>";
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(Parse(whole.substr(0, length)).ok()) << length;
    EXPECT_TRUE(Parse(whole).ok());
}

TEST_P(XmlDomTest, AFailedParseEmptiesTheDocumentAndTheNextFillsIt) {
    Root("<a/>");
    EXPECT_FALSE(document->Parse("<b>", XmlInput::kText, XmlPositions::kNone).ok());
    EXPECT_EQ(document->SelectSingle("a"), nullptr);
    EXPECT_TRUE(document->Parse("<c/>", XmlInput::kText, XmlPositions::kNone).ok());
    EXPECT_EQ(document->SelectSingle("a"), nullptr);
    EXPECT_NE(document->SelectSingle("c"), nullptr);
}

TEST_P(XmlDomTest, FileBytesMayBeginWithAMark) {
    document = Create();
    ASSERT_TRUE(document->Parse("\xEF\xBB\xBF<a>\xC3\xA9</a>", XmlInput::kFile, XmlPositions::kNone).ok());
    EXPECT_EQ(document->Text(document->SelectSingle("a")), "\xC3\xA9");
}

TEST_P(XmlDomTest, HoldsItsLimits) {
    EXPECT_TRUE(Parse(Nested(kXmlMaxDepth)).ok());
    EXPECT_EQ(Parse(Nested(kXmlMaxDepth + 1)).code, ErrorCode::kLimit);
    EXPECT_EQ(Parse(Nested(100000)).code, ErrorCode::kLimit);

    EXPECT_TRUE(Parse(WithAttributes(kXmlMaxAttributes)).ok());
    unsigned seen = 0;
    document->VisitAttributes(document->SelectSingle("a"), [&seen](const XmlAttribute&) { ++seen; });
    EXPECT_EQ(seen, kXmlMaxAttributes);
    EXPECT_EQ(Parse(WithAttributes(kXmlMaxAttributes + 1)).code, ErrorCode::kLimit);
    EXPECT_EQ(Parse("<r>\n" + WithAttributes(100000) + "</r>").code, ErrorCode::kLimit);
    EXPECT_EQ(Parse("<r>\n" + WithAttributes(100000) + "</r>").line, 2u);
    EXPECT_TRUE(Parse("<r>" + Repeated(WithAttributes(4000), 5) + std::string(50000, '=') + "</r>").ok());

    const std::string frame = "<a></a>";
    const std::string filler = Repeated("<b>0123456789</b>", (kXmlMaxBytes - frame.size()) / 17);
    const std::string rest((kXmlMaxBytes - frame.size()) % 17, ' ');
    EXPECT_TRUE(Parse("<a>" + filler + rest + "</a>").ok());
    EXPECT_EQ(Parse("<a>" + filler + rest + " </a>").code, ErrorCode::kLimit);
}

TEST_P(XmlDomTest, SelectsASingleElement) {
    Root("<a><b i='1'/>t<b i='2'><c/></b></a>");
    EXPECT_EQ(document->SelectSingle("a"), document->SelectSingle("/a"));
    EXPECT_NE(document->SelectSingle("a"), nullptr);
    EXPECT_EQ(Value(document->SelectSingle("/a/b"), "i"), "=1");
    EXPECT_EQ(Value(document->SelectSingle("//b"), "i"), "=1");
    EXPECT_NE(document->SelectSingle("//c"), nullptr);
    for (const char* none : std::initializer_list<const char*>{"", "A", "b", "/b", "//d", "/", "a/", "/a/@i",
                                                               "a/text()", "1 +", "[", "//", nullptr})
        EXPECT_EQ(document->SelectSingle(none), nullptr) << (none ? none : "null");
    EXPECT_EQ(Create()->SelectSingle("a"), nullptr);
    Root("<p:a xmlns:p='u'/>");
    EXPECT_NE(document->SelectSingle("p:a"), nullptr);
    EXPECT_EQ(document->SelectSingle("a"), nullptr);
    Root("<a xmlns='u'/>");
    EXPECT_NE(document->SelectSingle("a"), nullptr);
}

TEST_P(XmlDomTest, WalksChildElementsOnly) {
    XmlNode* root = Root("<a>1<b/><!--x--><p:c xmlns:p='u'/><?t?><b/></a>");
    XmlChildren list = document->Children(root);
    EXPECT_EQ(Names(list), "b c b ");
    EXPECT_NE(document->NextElement(list, "c"), nullptr);
    EXPECT_EQ(Names(list), "b ");
    EXPECT_EQ(document->NextElement(list, "B"), nullptr);
    EXPECT_EQ(document->NextElement(list), nullptr);
    list.Reset();
    EXPECT_EQ(Names(list), "b c b ");
}

TEST_P(XmlDomTest, AListHoldsTheChildrenOfItsMoment) {
    XmlNode* root = Root("<a><b/></a>");
    XmlChildren list = document->Children(root);
    ASSERT_NE(document->AppendElement(root, "c"), nullptr);
    EXPECT_EQ(Names(list), "b ");
    EXPECT_EQ(Names(document->Children(root)), "b c ");
    XmlNode* empty = document->NextElement(list);
    XmlChildren none = document->Children(empty);
    ASSERT_NE(document->AppendElement(empty, "d"), nullptr);
    EXPECT_EQ(Names(none), "");
}

TEST_P(XmlDomTest, FindsAttributesByTheirWrittenName) {
    XmlNode* root = Root("<a k='1' xmlns:p='u' p:k='2' e='' xmlns='v' long='a&amp;b'/>");
    const std::pair<const char*, const char*> rows[] = {
        {"k", "=1"},       {"p:k", "=2"},       {"e", "="},           {"xmlns:p", "=u"},
        {"xmlns", "=v"},   {"long", "=a&b"},    {"K", "unchanged"},   {"p", "unchanged"},
        {"", "unchanged"}, {"p:", "unchanged"}, {"q:k", "unchanged"}, {"lon", "unchanged"}};
    for (const auto& [name, value] : rows) EXPECT_EQ(Value(root, name), value) << name;
    std::string all;
    const auto note = [&all](const XmlAttribute& attribute) {
        for (const auto part : {attribute.prefix, attribute.localName, attribute.value})
            all.append(part).append(",");
        all += ' ';
    };
    document->VisitAttributes(root, note);
    EXPECT_EQ(all, "xmlns,p,u, ,xmlns,v, ,k,1, p,k,2, ,e,, ,long,a&b, ");
}

TEST_P(XmlDomTest, ManyAttributesAreSetOneByOne) {
    XmlNode* root = Root("<a xmlns:p='u' n1='0'/>");
    XmlNode* other = document->AppendElement(root, "b");
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 200; ++i) {
            const std::string name = (i % 2 ? "n" : "p:n") + std::to_string(i);
            ASSERT_TRUE(document->SetAttribute(root, name.c_str(), std::to_string(i + round).c_str()));
            if (i % 10 == 0) document->SetAttribute(other, name.c_str(), "x");
        }
    }
    EXPECT_EQ(Value(root, "n1"), "=2");
    EXPECT_EQ(Value(root, "p:n198"), "=199");
    EXPECT_EQ(Value(root, "n198"), "unchanged");
    EXPECT_EQ(Value(root, "p:n199"), "unchanged");
    unsigned seen = 0;
    std::string_view last;
    document->VisitAttributes(root, [&](const XmlAttribute& attribute) {
        ++seen;
        last = attribute.localName;
    });
    EXPECT_EQ(seen, 201u);
    EXPECT_EQ(last, "n199");
    seen = 0;
    document->VisitAttributes(other, [&seen](const XmlAttribute&) { ++seen; });
    EXPECT_EQ(seen, 20u);
}

TEST_P(XmlDomTest, KnowsWhereElementsStand) {
    const std::string far(70000, '\n');
    const std::string text =
        "<?xml version='1.0'?>\r\n<a>\n  <b\n  x='>'\n  y='2'><c/></b>" + far + "\xC3\xA9 <d/>\n</a>";
    const Result result = Parse(text, XmlPositions::kRecord);
    ASSERT_TRUE(result.ok()) << result.text;
    const struct {
        const char* path;
        std::uint32_t line;
        std::uint32_t column;
    } rows[] = {{"/a", 2, 1}, {"/a/b", 3, 3}, {"/a/b/c", 5, 9}, {"/a/d", 70005, 4}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        XmlNode* element = document->SelectSingle(row.path);
        ASSERT_NE(element, nullptr);
        EXPECT_EQ(document->Position(element).line, row.line);
        EXPECT_EQ(document->Position(element).column, row.column);
    }
    XmlNode* made = document->AppendElement(document->SelectSingle("/a/b"), "made");
    EXPECT_EQ(document->Position(made).line, 3u);
}

TEST_P(XmlDomTest, BuildsExactlyTheNodesGiven) {
    document = Create();
    EXPECT_EQ(DocumentMarkup(), "");
    ASSERT_TRUE(document->AppendInstruction(nullptr, "xml", "version='1.0'"));
    EXPECT_EQ(DocumentMarkup(), "<?xml version=\"1.0\"?>");
    EXPECT_FALSE(document->AppendInstruction(nullptr, "xml", "version='1.0'"));
    ASSERT_TRUE(document->AppendComment(nullptr, "c & <"));
    XmlNode* root = document->AppendElement(nullptr, "a");
    ASSERT_NE(root, nullptr);
    EXPECT_FALSE(document->AppendInstruction(root, "xml", ""));
    ASSERT_TRUE(document->SetAttribute(root, "k", "1 & 2 < 3 > 0 \"it's\" \t\r\n"));
    ASSERT_TRUE(document->SetAttribute(root, "l", ""));
    ASSERT_TRUE(document->AppendText(root, "1 & 2 < 3 > 0 \"it's\" \t\r\n"));
    ASSERT_TRUE(document->AppendText(root, "&lt;"));
    XmlNode* child = document->AppendElement(root, "b");
    ASSERT_TRUE(document->AppendText(child, ""));
    ASSERT_TRUE(document->AppendInstruction(root, "t", "d"));
    EXPECT_EQ(document->AppendElement(root, ""), nullptr);
    EXPECT_EQ(document->AppendElement(root, nullptr), nullptr);
    EXPECT_FALSE(document->SetAttribute(root, "", "x"));
    EXPECT_FALSE(document->AppendInstruction(root, "", "x"));
    EXPECT_EQ(DocumentMarkup(),
              "<?xml version=\"1.0\"?><!--c & <--><a k=\"1 &amp; 2 &lt; 3 &gt; 0 &quot;it's&quot; "
              "&#9;&#13;&#10;\" l=\"\">"
              "1 &amp; 2 &lt; 3 &gt; 0 \"it's\" \t&#13;\n&amp;lt;<b></b><?t d?></a>");
    EXPECT_EQ(document->Position(root).line, 0u);
    EXPECT_EQ(document->SelectSingle("a"), root);
}

TEST_P(XmlDomTest, AnAttributeIsReplacedInItsPlace) {
    XmlNode* root = Root("<a k='1' x='&#65;B'/>");
    ASSERT_TRUE(document->SetAttribute(root, "k", "2"));
    ASSERT_TRUE(document->SetAttribute(root, "y", "3"));
    ASSERT_TRUE(document->SetAttribute(root, "k", "4"));
    EXPECT_EQ(MarkupOf(root), "<a k=\"4\" x=\"AB\" y=\"3\"/>");
}

TEST_P(XmlDomTest, PrefixedNamesCanBeBuilt) {
    XmlNode* root = Root("<a xmlns:p='u'/>");
    XmlNode* child = document->AppendElement(root, "p:b");
    ASSERT_TRUE(document->SetAttribute(child, "p:k", "1"));
    ASSERT_TRUE(document->SetAttribute(child, "p:k", "2"));
    XmlNode* unknown = document->AppendElement(root, "q:c");
    EXPECT_EQ(document->LocalName(child), "b");
    EXPECT_EQ(document->LocalName(unknown), "c");
    EXPECT_EQ(Value(child, "p:k"), "=2");
    EXPECT_EQ(MarkupOf(root), "<a xmlns:p=\"u\"><p:b p:k=\"2\"/><q:c/></a>");
}

TEST_P(XmlDomTest, CharactersThatXmlCannotHoldMakeMarkupFail) {
    const struct {
        const char* label;
        const char* text;
        bool good;
    } rows[] = {{"tab, LF, CR", "\t\n\r", true},
                {"delete", "\x7F", true},
                {"C1 control", "\xC2\x80", true},
                {"U+FFFD", "\xEF\xBF\xBD", true},
                {"beyond the base plane", "\xF0\x9F\x98\x80", true},
                {"control character", "x\x01y", false},
                {"escape", "\x1B", false},
                {"vertical tab", "\v", false},
                {"U+FFFE", "\xEF\xBF\xBE", false},
                {"U+FFFF", "\xEF\xBF\xBF", false},
                {"surrogate", "\xED\xA0\x80", false},
                {"overlong", "\xC0\xAF", false},
                {"cut short", "\xE2\x82", false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        for (const int place : {0, 1, 2}) {
            document = Create();
            XmlNode* root = document->AppendElement(nullptr, "a");
            XmlNode* child = document->AppendElement(root, "b");
            if (place == 0) document->AppendText(child, row.text);
            if (place == 1) document->SetAttribute(child, "k", row.text);
            if (place == 2) document->AppendComment(child, row.text);
            std::string markup = "unchanged";
            EXPECT_EQ(document->Markup(root, markup).ok(), row.good);
            EXPECT_EQ(markup == "unchanged", !row.good);
            markup = "unchanged";
            EXPECT_EQ(document->DocumentMarkup(markup).ok(), row.good);
            EXPECT_EQ(markup == "unchanged", !row.good);
        }
    }
}

TEST_P(XmlDomTest, CopiesAnElementWithEverythingInIt) {
    const struct {
        const char* label;
        const char* source;
        const char* path;
        const char* expected;
    } rows[] = {
        {"alone", "<a/>", "/a", "<a/>"},
        {"text and attributes", "<a x='1' y=''>t<b z='2'/>u</a>", "/a",
         "<a x=\"1\" y=\"\">t<b z=\"2\"/>u</a>"},
        {"siblings after a deep child", "<a><b><c><d/></c></b><e/>t</a>", "/a",
         "<a><b><c><d/></c></b><e/>t</a>"},
        {"only the part", "<a><b><c/></b><d/></a>", "/a/b", "<b><c/></b>"},
        {"comment, section, instruction", "<a><!-- c --><![CDATA[<x> & y]]><?t d?></a>", "/a",
         "<a><!-- c --><![CDATA[<x> & y]]><?t d?></a>"},
        {"its own namespaces", "<p:a xmlns:p='u' xmlns='v'><b p:k='1'/></p:a>", "/*",
         nullptr},  // declarations may stand in any order
        {"namespaces from around it", "<r xmlns:p='u' xmlns:q='v'><p:a p:k='1'/></r>", "/r/*",
         "<p:a xmlns:p=\"u\" p:k=\"1\"/>"},
        {"a default one from around it", "<r xmlns='u'><a><b/></a></r>", "/*/*", "<a xmlns=\"u\"><b/></a>"},
        {"the one nobody declares", "<a xml:space='preserve'> </a>", "/a", "<a xml:space=\"preserve\"> </a>"},
        {"replaced once each", "<a k='%F% %V%'>%V%%F%<b>%F</b></a>", "/a",
         "<a k=\"Fan %V% 42\">42Fan %V%<b>%F</b></a>"},
        {"replaced in comments and sections", "<a><!--%F%--><![CDATA[%F%]]><?t %F%?></a>", "/a",
         "<a><!--Fan %V%--><![CDATA[Fan %V%]]><?t %F%?></a>"},
        {"not in names", "<a.F. F='1'/>", "/*", "<a.F. F=\"1\"/>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        XmlNode* element = nullptr;
        ASSERT_TRUE(Parse(row.source).ok());
        if (std::string(row.path) == "/r/*" || std::string(row.path) == "/*/*") {
            XmlChildren children = document->Children(document->SelectSingle("/*"));
            element = document->NextElement(children);
        } else {
            element = document->SelectSingle(row.path);
        }
        ASSERT_NE(element, nullptr);
        const std::string original = MarkupOf(element);
        const auto target = Create();
        XmlNode* root = target->AppendElement(nullptr, "t");
        target->AppendElement(root, "before");
        XmlNode* copy =
            target->AppendCopy(root, *document, element, {{"%F%", "Fan %V%"}, {"%V%", "42"}, {"", "x"}});
        ASSERT_NE(copy, nullptr);
        std::string markup;
        ASSERT_TRUE(target->Markup(copy, markup).ok());
        EXPECT_EQ(markup, row.expected ? row.expected : original);
        EXPECT_EQ(MarkupOf(element), original) << "the source stays";
        document.reset();
        ASSERT_TRUE(target->SetAttribute(copy, "more", "1")) << "the copy lives on";
        ASSERT_TRUE(target->Markup(root, markup).ok());
        EXPECT_NE(markup.find("<t><before/><"), std::string::npos) << markup;
    }
}

TEST_P(XmlDomTest, NoReplacementEndsACommentOrASection) {
    XmlNode* root = Root("<a k='%V%'><!-- %V% --><!--%V%--><![CDATA[%V%]]>%V%</a>");
    const struct {
        const char* value;
        const char* expected;
    } rows[] = {
        {"--><x/>",
         "<a k=\"--&gt;&lt;x/&gt;\"><!-- - -><x/> --><!--- -><x/>--><![CDATA[--><x/>]]>--&gt;&lt;x/&gt;</a>"},
        {"---", "<a k=\"---\"><!-- - - - --><!--- - - --><![CDATA[---]]>---</a>"},
        {"]]>", "<a k=\"]]&gt;\"><!-- ]]> --><!--]]>-->]]&gt;]]&gt;</a>"},
        {"\"", "<a k=\"&quot;\"><!-- \" --><!--\"--><![CDATA[\"]]>\"</a>"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.value);
        const auto target = Create();
        XmlNode* copy = target->AppendCopy(nullptr, *document, root, {{"%V%", row.value}});
        std::string markup;
        ASSERT_TRUE(target->Markup(copy, markup).ok());
        EXPECT_EQ(markup, row.expected);
        XmlNode* read = Root(markup);
        ASSERT_NE(read, nullptr);
        EXPECT_EQ(Value(read, "k"), std::string("=") + row.value);
        EXPECT_EQ(document->Text(read), std::string(row.value) + row.value);
        root = Root("<a k='%V%'><!-- %V% --><!--%V%--><![CDATA[%V%]]>%V%</a>");
    }
}

TEST_P(XmlDomTest, CopiesWithinADocumentAndDeepTrees) {
    XmlNode* root = Root("<a><b x='1'><c/></b></a>");
    XmlChildren children = document->Children(root);
    XmlNode* copy = document->AppendCopy(root, *document, document->NextElement(children), {});
    EXPECT_EQ(document->LocalName(copy), "b");
    EXPECT_EQ(MarkupOf(root), "<a><b x=\"1\"><c/></b><b x=\"1\"><c/></b></a>");
    document = Create();
    XmlNode* node = document->AppendElement(nullptr, "n");
    for (int i = 0; i < 100000; ++i) node = document->AppendElement(node, "n");
    const auto target = Create();
    copy = target->AppendCopy(nullptr, *document, document->SelectSingle("n"), {});
    std::string markup;
    ASSERT_TRUE(target->Markup(copy, markup).ok());
    EXPECT_EQ(markup.size(), 100000u * 7 + 4);
}

TEST_P(XmlDomTest, ABuiltTreeMayHaveAnyDepthAndLength) {
    document = Create();
    XmlNode* node = document->AppendElement(nullptr, "n");
    for (int i = 0; i < 100000; ++i) node = document->AppendElement(node, "n");
    for (int i = 0; i < 100000; ++i) document->AppendText(node, "x");
    XmlNode* root = document->SelectSingle("n");
    EXPECT_EQ(document->Text(root).size(), 100000u);
    EXPECT_EQ(MarkupOf(root).size(), 100001u * 7 + 100000u);
    document.reset();
}

TEST_P(XmlDomTest, WhatIsWrittenReadsBackTheSame) {
    document = Create();
    XmlNode* root = document->AppendElement(nullptr, "a");
    const std::string all = "\t\n\r !\"#$%&'()<=>]]> \xC2\x85\xE2\x80\xA8\xC3\xA9\xF0\x9F\x98\x80";
    document->SetAttribute(root, "k", all.c_str());
    document->AppendText(root, all.c_str());
    const std::string markup = DocumentMarkup();
    XmlNode* read = Root(markup);
    EXPECT_EQ(Value(read, "k"), "=" + all);
    EXPECT_EQ(document->Text(read), all);
    EXPECT_EQ(DocumentMarkup(), markup);
}

INSTANTIATE_TEST_SUITE_P(Backends, XmlDomTest,
                         ::testing::Values(Backend{"linked", BackendXmlDom}, Backend{"fake", FakeDom}),
                         [](const auto& backend) { return std::string(backend.param.name); });

TEST(FakeXmlDomTest, FaultsCanBeSwitchedOn) {
    FakeXmlDom dom;
    ScopedService<XmlDom> installed(SetXmlDom, dom);
    EXPECT_EQ(&CurrentXmlDom(), &dom);
    const auto document = CurrentXmlDom().CreateDocument();
    std::string markup;
    dom.FaultSwitches() = {.create = true, .parse = true, .markup = true, .documentMarkup = true};
    EXPECT_EQ(dom.CreateDocument(), nullptr);
    EXPECT_FALSE(document->Parse("<a/>", XmlInput::kText, XmlPositions::kNone).ok());
    EXPECT_FALSE(document->DocumentMarkup(markup).ok());
    EXPECT_FALSE(document->Markup(document->AppendElement(nullptr, "a"), markup).ok());
    dom.FaultSwitches() = {};
    EXPECT_TRUE(document->DocumentMarkup(markup).ok());
    EXPECT_NE(dom.CreateDocument(), nullptr);
}

TEST(XmlDomCopyTest, ADocumentOfAnotherBackendIsNotCopied) {
    const auto fake = FakeDom().CreateDocument();
    const auto linked = BackendXmlDom().CreateDocument();
    XmlNode* element = fake->AppendElement(nullptr, "a");
    EXPECT_EQ(linked->AppendCopy(nullptr, *fake, element, {}), nullptr);
    EXPECT_EQ(fake->AppendCopy(nullptr, *linked, linked->AppendElement(nullptr, "a"), {}), nullptr);
}

TEST(XmlDomSlotTest, TheBackendIsInPlaceWithoutAnyCall) {
    EXPECT_EQ(&CurrentXmlDom(), &BackendXmlDom());
}

}  // namespace
}  // namespace brindle
