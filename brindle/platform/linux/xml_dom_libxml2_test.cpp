// What the libxml2 backend does beyond the common contract: document types, encodings, XPath, hostile
// documents.
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "brindle/platform/clock.h"
#include "brindle/platform/xml_dom.h"

namespace brindle {
namespace {

std::string Repeated(std::string_view text, std::size_t times) {
    std::string all;
    all.reserve(text.size() * times);
    while (times-- > 0) all += text;
    return all;
}

class XmlDomLibxml2Test : public ::testing::Test {
  protected:
    Result Parse(std::string_view text, XmlInput input = XmlInput::kText) {
        document = BackendXmlDom().CreateDocument();
        return document->Parse(text, input, XmlPositions::kNone);
    }
    XmlNode* Root() { return document->SelectSingle("/*"); }
    std::string RootMarkup() {
        std::string markup;
        return Root() && document->Markup(Root(), markup).ok() ? markup : "no root";
    }
    std::shared_ptr<XmlDocument> document;
};

TEST_F(XmlDomLibxml2Test, InternalEntitiesAreExpanded) {
    const struct {
        const char* label;
        const char* text;
        const char* markup;
    } rows[] = {
        {"text", "<!DOCTYPE a [<!ENTITY e \"val\">]><a>x&e;y</a>", "<a>xvaly</a>"},
        {"attribute", "<!DOCTYPE a [<!ENTITY e \"val\">]><a x=\"1&e;2\"/>", "<a x=\"1val2\"/>"},
        {"markup", "<!DOCTYPE a [<!ENTITY e \"<b k='1'/>\">]><a>&e;&e;</a>",
         "<a><b k=\"1\"/><b k=\"1\"/></a>"},
        {"of entities", "<!DOCTYPE a [<!ENTITY e \"v\"><!ENTITY f \"&e;&e;\">]><a>&f;</a>", "<a>vv</a>"},
        {"parameter", "<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"v\">'>%p;]><a>&e;</a>", "<a>v</a>"},
        {"default attributes not added", "<!DOCTYPE a [<!ATTLIST a x CDATA \"d\">]><a/>", "<a/>"},
        {"not validated", "<!DOCTYPE b [<!ELEMENT a EMPTY>]><a><b/></a>", "<a><b/></a>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        const Result result = Parse(row.text);
        EXPECT_TRUE(result.ok()) << result.text;
        EXPECT_EQ(RootMarkup(), row.markup);
    }
    std::string markup;
    ASSERT_TRUE(Parse("<?xml version='1.0'?><!DOCTYPE a [<!ENTITY e 'v'>]><a>&e;</a>").ok());
    ASSERT_TRUE(document->DocumentMarkup(markup).ok());
    EXPECT_EQ(markup, "<?xml version=\"1.0\"?><a>v</a>");
}

// The files exist and can be read: only the parser keeps them out.
TEST_F(XmlDomLibxml2Test, NoExternalEntityOrTypeIsEverOpened) {
    const std::string folder = ::testing::TempDir() + "brindle_xml_external";
    std::filesystem::create_directories(folder);
    const std::string secret = folder + "/secret.txt";
    std::ofstream(secret) << "SECRET";
    const std::string type = folder + "/type.dtd";
    std::ofstream(type) << "<!ENTITY e \"SECRET\"><!ATTLIST a k CDATA \"SECRET\">";
    const std::string rows[] = {
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"" + secret + "\">]><a>x&e;y</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"file://" + secret + "\">]><a>x&e;y</a>",
        "<!DOCTYPE a [<!ENTITY e PUBLIC \"p\" \"" + secret + "\">]><a>x&e;y</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"" + secret + "\">]><a k='&e;'>xy</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"" + secret + "\"><!ENTITY f '&e;'>]><a>x&f;y</a>",
        "<!DOCTYPE a [<!ENTITY % p SYSTEM \"" + type + "\">%p;]><a>xy</a>",
        "<!DOCTYPE a SYSTEM \"" + type + "\"><a>xy</a>",
        "<!DOCTYPE a SYSTEM \"" + type + "\"><a k='&e;'>x&e;y</a>",
        "<!DOCTYPE a PUBLIC \"p\" \"" + type + "\"><a>xy</a>",
        "<!DOCTYPE a SYSTEM \"http://127.0.0.1:1/type.dtd\"><a>xy</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"http://127.0.0.1:1/e\">]><a>x&e;y</a>",
        "<?oasis-xml-catalog catalog=\"" + secret + "\"?><a>xy</a>",
        "<a xmlns:i='http://www.w3.org/2001/XInclude'>x<i:include href='" + secret + "' parse='text'/>y</a>"};
    for (const std::string& row : rows) {
        SCOPED_TRACE(row);
        const Result result = Parse(row, XmlInput::kFile);
        EXPECT_TRUE(result.ok()) << result.text;
        ASSERT_NE(Root(), nullptr);
        EXPECT_EQ(document->Text(Root()), "xy");
        EXPECT_EQ(RootMarkup().find("SECRET"), std::string::npos);
    }
    // A pipe would hang a parser that opens it, even one that drops what it read.
    const std::string pipe = folder + "/pipe";
    std::filesystem::remove(pipe);
    ASSERT_EQ(std::system(("mkfifo " + pipe).c_str()), 0);
    const std::string broken[] = {
        "<?xml version='1.0' nonsense?><!DOCTYPE a [<!ENTITY e SYSTEM '" + pipe + "'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM '" + pipe + "'><!BROKEN>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY % p SYSTEM '" + pipe + "'><!BROKEN>%p;]><a/>",
        "<!DOCTYPE a SYSTEM '" + pipe + "' [<!BROKEN>]><a>&e;</a>"};
    for (const std::string& row : broken) EXPECT_FALSE(Parse(row, XmlInput::kFile).ok()) << row;
    std::filesystem::remove_all(folder);
}

TEST_F(XmlDomLibxml2Test, NothingIsPrintedAndNoHandlerOfTheProcessIsTouched) {
    const auto generic = xmlGenericError;
    const auto structured = xmlStructuredError;
    const auto loader = xmlGetExternalEntityLoader();
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    for (const char* text :
         {"<a", "<a>&e;</a>", "<a>\xE9</a>", "<p:a/>", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>",
          "<?xml version='1.0' encoding='x-none'?><a/>", "<!DOCTYPE a [%p;]><a/>"})
        EXPECT_FALSE(Parse(text, XmlInput::kFile).ok() &&
                     std::string_view(text).find('%') == std::string_view::npos);
    ASSERT_TRUE(Parse("<a/>").ok());
    for (const char* xpath : {"a[", "f()", "p:f()", "$v", "$p:v", "p:a", "count('", "id(", "a[p :f(1)]",
                              "((((", "\x01", "//\xFF", "a[\xED\xBB\xBF]", "//\xEF\xBF\xBF", "1 div"})
        EXPECT_EQ(document->SelectSingle(xpath), nullptr) << xpath;
    std::string markup;
    document->AppendText(Root(), "\xFF");
    EXPECT_FALSE(document->DocumentMarkup(markup).ok());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(xmlGenericError, generic);
    EXPECT_EQ(xmlStructuredError, structured);
    EXPECT_EQ(xmlGetExternalEntityLoader(), loader);
}

// Neither the text nor the entity is too deep: where the one stands in the other is.
TEST_F(XmlDomLibxml2Test, EntitiesDoNotNestDeeperThanTextsMay) {
    const auto nested = [&](int outer, int inner) {
        return "<!DOCTYPE a [<!ENTITY e '" + Repeated("<b>", inner) + Repeated("</b>", inner) + "'>]>" +
               Repeated("<a>", outer) + "&e;" + Repeated("</a>", outer);
    };
    EXPECT_TRUE(Parse(nested(128, 128)).ok());
    for (const auto& [outer, inner] : {std::pair(128, 129), std::pair(129, 128), std::pair(250, 250)}) {
        SCOPED_TRACE(outer);
        const Result result = Parse(nested(outer, inner));
        EXPECT_EQ(result.code, ErrorCode::kLimit);
        EXPECT_EQ(result.text, "elements nested deeper than 256");
    }
}

TEST_F(XmlDomLibxml2Test, SelectsByXPath) {
    ASSERT_TRUE(Parse("<a xmlns:p='u'><b i='1'/><b i='2'><c/></b><p:d/>t</a>").ok());
    const std::pair<const char*, const char*> rows[] = {{"/a/b[2]", "b"},
                                                        {"//b[@i='2']/c", "c"},
                                                        {"*", "a"},
                                                        {"//c | /a", "a"},
                                                        {"//p:d", "d"},
                                                        {"//c/..", "b"},
                                                        {"/a/*[last()]", "d"},
                                                        {" a ", "a"},
                                                        {"//*[local-name()='d']", "d"},
                                                        {"//c/ancestor::*", "a"},
                                                        {"//@i", ""},
                                                        {"count(//b)", ""},
                                                        {"'text'", ""},
                                                        {"//text()", ""},
                                                        {"/", ""},
                                                        {"//q:d", ""},
                                                        {"//p:d | //text()", "d"},
                                                        {"a//", ""},
                                                        {"//b[position()=last()]", "b"}};
    for (const auto& [xpath, name] : rows) {
        SCOPED_TRACE(xpath);
        XmlNode* found = document->SelectSingle(xpath);
        EXPECT_EQ(found ? document->LocalName(found) : "", std::string_view(name));
    }
    EXPECT_EQ(document->SelectSingle(Repeated("(", 100000).c_str()), nullptr);
    EXPECT_EQ(document->SelectSingle((Repeated("//*[", 3000) + "1" + Repeated("]", 3000)).c_str()), nullptr);
}

TEST_F(XmlDomLibxml2Test, ReadsFilesInTheirOwnEncoding) {
    using namespace std::string_literals;
    const struct {
        const char* label;
        std::string bytes;
        const char* text;  // null: refused
    } rows[] = {
        {"UTF-8", "<a>\xC3\xA9</a>", "\xC3\xA9"},
        {"UTF-8 declared", "<?xml version=\"1.0\" encoding=\"utf-8\"?><a>\xC3\xA9</a>", "\xC3\xA9"},
        {"code page bytes undeclared", "<a>Caf\xE9</a>", nullptr},
        {"windows-1252", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>\xE9 \x80\x81</a>",
         "\xC3\xA9 \xE2\x82\xAC\xC2\x81"},
        {"single quotes and blanks", "<?xml version='1.0' encoding = 'ISO-8859-1' ?><a>\xE9</a>", "\xC3\xA9"},
        {"tabs and line ends for blanks",
         "<?xml\tversion='1.0'\r\nencoding\t=\r\n'ISO-8859-1'\n?><a>\xE9</a>", "\xC3\xA9"},
        {"no encoding", "<?xml version='1.0'?><a>\xC3\xA9</a>", "\xC3\xA9"},
        {"a declaration that ends at once", "<?xml", nullptr},
        {"not a declaration", "<?xmlx encoding='ISO-8859-1'?><a>\xC3\xA9</a>", "\xC3\xA9"},
        {"part of another word", "<?xml version='1.0' myencoding='ISO-8859-1'?><a>\xE9</a>", nullptr},
        {"without a sign", "<?xml version='1.0' encoding 'ISO-8859-1'?><a>\xE9</a>", nullptr},
        {"nothing behind the sign", "<?xml version='1.0' encoding=?><a>\xE9</a>", nullptr},
        {"without quotes", "<?xml version='1.0' encoding=ISO-8859-1?><a>\xE9</a>", nullptr},
        {"a quote that is not closed", "<?xml version='1.0' encoding='ISO-8859-1?><a>\xE9</a>", nullptr},
        {"cp1252", "<?xml version='1.0' encoding='CP1252'?><a>\x80</a>", "\xE2\x82\xAC"},
        {"utf8 in one word", "<?xml version='1.0' encoding='utf8'?><a>\xC3\xA9</a>", "\xC3\xA9"},
        {"iso-8859-15", "<?xml version='1.0' encoding='iso-8859-15'?><a>\xA4</a>", "\xE2\x82\xAC"},
        {"koi8-r", "<?xml version='1.0' encoding='KOI8-R'?><a>\xC1</a>", "\xD0\xB0"},
        {"shift_jis", "<?xml version='1.0' encoding='Shift_JIS'?><a>\x83\x41</a>", "\xE3\x82\xA2"},
        {"us-ascii with a high byte", "<?xml version='1.0' encoding='us-ascii'?><a>\xE9</a>", nullptr},
        {"unknown", "<?xml version='1.0' encoding='x-none'?><a/>", nullptr},
        {"a converter's option", "<?xml version='1.0' encoding='ISO-8859-1//IGNORE'?><a/>", nullptr},
        {"empty", "<?xml version='1.0' encoding=''?><a/>", nullptr},
        {"UTF-16 declared but narrow", "<?xml version='1.0' encoding='UTF-16'?><a/>", nullptr},
        {"UTF-16 little-endian, mark", "\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0"s, "\xC3\xA9"},
        {"UTF-16 big-endian, mark", "\xFE\xFF\0<\0a\0>\0\xE9\0<\0/\0a\0>"s, "\xC3\xA9"},
        {"UTF-16 pair", "\xFF\xFE<\0a\0>\0\x3D\xD8\0\xDE<\0/\0a\0>\0"s, "\xF0\x9F\x98\x80"},
        {"UTF-16 half a pair", "\xFF\xFE<\0a\0>\0\x3D\xD8<\0/\0a\0>\0"s, nullptr},
        {"UTF-16 half a unit", "\xFF\xFE<\0a\0/\0>\0 "s, nullptr},
        {"UTF-16 lone low half", "\xFF\xFE<\0a\0>\0\0\xDE<\0/\0a\0>\0"s, nullptr},
        {"UTF-16 without mark",
         "<\0?\0x\0m\0l\0 \0v\0e\0r\0s\0i\0o\0n\0=\0'\0"
         "1\0.\0"
         "0\0'\0?\0>\0<\0a\0/\0>\0"s,
         ""},
        {"UTF-8 mark wins", "\xEF\xBB\xBF<?xml version='1.0' encoding='iso-8859-1'?><a>\xC3\xA9</a>",
         "\xC3\xA9"},
        {"UTF-8 mark twice",
         "\xEF\xBB\xBF\xEF\xBB\xBF"
         "hello",
         nullptr},
        {"EBCDIC", "\x4C\x6F\xA7\x94\x93", nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        const Result result = Parse(row.bytes, XmlInput::kFile);
        EXPECT_EQ(result.ok(), row.text != nullptr) << result.text;
        EXPECT_EQ(Root() ? document->Text(Root()) : "refused", row.text ? row.text : "refused");
    }
}

TEST_F(XmlDomLibxml2Test, MarkupOfAnElementStandsAlone) {
    ASSERT_TRUE(Parse("<a xmlns='d' xmlns:p='u' xmlns:q='v'><p:b/><c><d q:k='1'/></c></a>").ok());
    XmlChildren children = document->Children(Root());
    std::string markup;
    ASSERT_TRUE(document->Markup(document->NextElement(children), markup).ok());
    EXPECT_EQ(markup, "<p:b xmlns:p=\"u\"/>");
    ASSERT_TRUE(document->Markup(document->NextElement(children), markup).ok());
    EXPECT_EQ(markup, "<c xmlns=\"d\" xmlns:q=\"v\"><d q:k=\"1\"/></c>");
}

std::string Attributes(std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += " a" + std::to_string(i) + "=''";
    return text;
}

std::string EntityChain(int count, const std::string& innermost, int copies) {
    std::string type = "<!DOCTYPE a [<!ENTITY e0 \"" + innermost + "\">";
    for (int i = 1; i <= count; ++i)
        type += "<!ENTITY e" + std::to_string(i) + " \"" +
                Repeated("&e" + std::to_string(i - 1) + ";", copies) + "\">";
    return type + "]>";
}

std::string EntityNesting(int count, const std::string& open, const std::string& close) {
    std::string type = "<!DOCTYPE a [<!ENTITY e0 \"\">";
    for (int i = 1; i <= count; ++i)
        type += "<!ENTITY e" + std::to_string(i) + " \"" + open + "&e" + std::to_string(i - 1) + ";" + close +
                "\">";
    return type + "]>";
}

std::string AttributeTypes(std::size_t count) {
    std::string type = "<!DOCTYPE a [<!ATTLIST a";
    for (std::size_t i = 0; i < count; ++i) type += " d" + std::to_string(i) + " CDATA ''";
    return type + ">]>";
}

std::string Namespaces(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += " xmlns:n" + std::to_string(i) + "='u'";
    return text;
}

// Each of these takes libxml2 by itself minutes, gigabytes or the whole stack.
TEST_F(XmlDomLibxml2Test, HostileDocumentsEndQuicklyWithAnError) {
    const std::string refs = Repeated("&e;", 1u << 20);
    const struct {
        const char* label;
        std::string text;
    } rows[] = {
        {"a billion laughs", EntityChain(9, "lol", 10) + "<a>&e9;</a>"},
        {"the same in an attribute", EntityChain(9, "lol", 10) + "<a k='&e9;'/>"},
        {"the same with elements", EntityChain(9, "<b/>", 10) + "<a>&e9;</a>"},
        {"a wide blow-up", "<!DOCTYPE a [<!ENTITY e '" + std::string(100000, 'x') + "'>]><a>" +
                               Repeated("&e;", 10000) + "</a>"},
        {"many references to little", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>" + refs + "</a>"},
        {"many references to nothing", "<!DOCTYPE a [<!ENTITY e ''>]><a>" + refs + "</a>"},
        {"references behind a long text",
         "<!DOCTYPE a [<!ENTITY e 'x'>]><a>" + std::string(5000000, 'x') + refs.substr(0, 300000) + "</a>"},
        {"itself", "<!DOCTYPE a [<!ENTITY e '&e;'>]><a>&e;</a>"},
        {"each other", "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>"},
        {"a long chain", EntityChain(100000, "x", 1) + "<a>&e100000;</a>"},
        {"parameter entities", "<!DOCTYPE a [<!ENTITY % p '" + Repeated("<!--x-->", 10000) + "'>" +
                                   Repeated("%p;", 10000) + "]><a/>"},
        {"attributes in an entity",
         "<!DOCTYPE a [<!ENTITY e \"<b" + Attributes(100000) + "/>\">]><a>&e;</a>"},
        {"attributes in an entity, hidden",
         "<!DOCTYPE a [<!ENTITY e \"&#60;b" + Attributes(100000) + "/>\">]><a>&e;</a>"},
        {"attributes by parameter entities", "<!DOCTYPE a [<!ENTITY % p \"" + Attributes(4000) +
                                                 "\"><!ENTITY % q '&#60;!ENTITY e \"&#60;b" +
                                                 Repeated("%p;", 20) + "/>\">'>%q;]><a>&e;</a>"},
        {"declared attributes", AttributeTypes(100000) + "<a/>"},
        {"declared and written attributes", AttributeTypes(3000) + "<a" + Attributes(3000) + "/>"},
        {"depth by entities", EntityNesting(30, Repeated("<n>", 20), Repeated("</n>", 20)) + "<a>&e30;</a>"},
        {"namespaces in scope", "<a" + Namespaces(200) + "><b" + Namespaces(200) + "/></a>"},
        {"an open tag for ever", "<a" + std::string(10000000, ' ')},
        {"tags for ever", Repeated("<", 1000000)},
        {"more than libxml2 expands in a short text", EntityChain(3, "lol", 10) + "<a>&e3;</a>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        const auto start = CurrentClock().MonotonicMilliseconds();
        const Result result = Parse(row.text);
        EXPECT_FALSE(result.ok());
        EXPECT_FALSE(result.text.empty());
        EXPECT_LT(CurrentClock().MonotonicMilliseconds() - start, 20000u);
        EXPECT_EQ(Root(), nullptr);
    }
}

TEST_F(XmlDomLibxml2Test, WhatIsWithinTheLimitsIsRead) {
    const struct {
        const char* label;
        std::string text;
    } rows[] = {
        {"some expansion", EntityChain(1, "lol", 10) + "<a>&e1;</a>"},
        {"a long text", "<a>" + std::string(12000000, 'x') + "</a>"},
        {"many references", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>" + Repeated("&e;", 1000) + "</a>"},
        {"attributes in an entity", "<!DOCTYPE a [<!ENTITY e \"<b" + Attributes(4096) + "/>\">]><a>&e;</a>"},
        {"declared attributes", AttributeTypes(2000) + "<a" + Attributes(2000) + "/>"},
        {"depth by entities", EntityNesting(5, Repeated("<n>", 50), Repeated("</n>", 50)) + "<a>&e5;</a>"},
        {"namespaces in scope",
         "<a" + Namespaces(128) + "><b" + Namespaces(128) + "/><b" + Namespaces(128) + "/></a>"},
        {"many predefined entities", "<a>" + Repeated("&lt;", 1000000) + "</a>"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        const Result result = Parse(row.text);
        EXPECT_TRUE(result.ok()) << result.text;
        EXPECT_NE(Root(), nullptr);
    }
}

TEST_F(XmlDomLibxml2Test, AnElementOutOfAnEntityStandsWhereTheOneAroundItDoes) {
    document = BackendXmlDom().CreateDocument();
    ASSERT_TRUE(document
                    ->Parse("<!DOCTYPE a [<!ENTITY e '<b><c/></b>'>]>\n<a>\n <d>&e;</d><f/></a>",
                            XmlInput::kText, XmlPositions::kRecord)
                    .ok());
    EXPECT_EQ(document->Position(document->SelectSingle("//c")).line, 3u);
    EXPECT_EQ(document->Position(document->SelectSingle("//c")).column, 2u);
    EXPECT_EQ(document->Position(document->SelectSingle("//f")).column, 12u);
}

// In time that grows by the square of their number this would not end.
TEST_F(XmlDomLibxml2Test, AttributesAreSetInConstantTime) {
    document = BackendXmlDom().CreateDocument();
    XmlNode* root = document->AppendElement(nullptr, "a");
    constexpr int kMany = 100'000;
    for (int round = 0; round < 2; ++round)
        for (int i = 0; i < kMany; ++i)
            document->SetAttribute(root, ("n" + std::to_string(i)).c_str(), round ? "new" : "old");
    int found = 0;
    document->VisitAttributes(root,
                              [&found](const XmlAttribute& attribute) { found += attribute.value == "new"; });
    EXPECT_EQ(found, kMany);
}

}  // namespace
}  // namespace brindle
