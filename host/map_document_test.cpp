// Maps: what a file may say, what is left out, what a check reports; hostile files.
#include "host/map_document.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "host/register_types.h"
#include "host/site_check.h"
#include "host/written_site_test.h"

namespace brindle::host {
namespace {

std::string Joined(const Problems& problems, const std::string& folder) {
    std::string text;
    for (const Problem& problem : problems) {
        std::string place = problem.Place();
        if (place.starts_with(folder)) place.erase(0, folder.size() + 1);
        text += place + ": " + problem.text + "\n";
    }
    return text;
}

class MapFile : public ::testing::Test {
  protected:
    bool Read(const std::string& text) {
        m_written.Write("map.xml", text);
        m_problems.clear();
        return ReadMapDocument(m_written.Path("map.xml"), m_map, m_problems);
    }
    std::string Told() const { return Joined(m_problems, m_written.Folder()); }

    WrittenSite m_written;
    MapDocument m_map;
    Problems m_problems;
};

TEST_F(MapFile, ReadsEveryAttribute) {
    ASSERT_TRUE(
        Read("<map width='800' height='600' title='T' colour='#102030' secondColour='#405060'\n"
             " textColour='#ffffff' picture='p.png' preview='17'>\n"
             "<button x='-5' y='6' width='70' height='8' name='N' object='o' device='1:2:3' text='%c'\n"
             " font='F' size='20' bold='TRUE' italic='1' textColour='#000001' align='right' valign='top'\n"
             " turn='up' colour='#FF0000' secondColour='#00FF00' borderColour='#0000FF' border='3'\n"
             " roundness='40' opacity='128' states='FALSE' blink='OFF' fill='horizontal' event='checkbox'\n"
             " toggle='ON' key='k' keyValue='v' user='u' selected='glow' selectedColour='#0a0B0c'\n"
             " picture='a' pressedPicture='b' selectedPicture='c' overPicture='d' pictureBehind='TRUE'\n"
             " keepAspect='FALSE'>\n"
             "<note text='#State#' align='centre' valign='middle' turn='down' scale='50'/></button></map>"))
        << Told();
    EXPECT_EQ(Told(), "");
    EXPECT_EQ(m_map.width, 800);
    EXPECT_EQ(m_map.height, 600);
    EXPECT_EQ(m_map.title, "T");
    EXPECT_EQ(m_map.colour.Or(0), 0x302010u);
    EXPECT_EQ(m_map.secondColour.Text(), "#405060");
    EXPECT_EQ(m_map.textColour.Or(0), 0xFFFFFFu);
    EXPECT_EQ(m_map.picture, "p.png");
    EXPECT_EQ(m_map.preview, 17);
    ASSERT_EQ(m_map.elements.size(), 1u);
    MapElement& button = m_map.elements[0];
    EXPECT_EQ(button.kind, MapKind::kButton);
    EXPECT_EQ(button.line, 3u);
    EXPECT_EQ(button.Place(), (CRect{-5, 6, 65, 14}));
    const AttributeTable table = button.Attributes();
    std::string all;
    for (const Attribute& attribute : table) all += attribute.name + "=" + attribute.text() + " ";
    EXPECT_EQ(all,
              "x=-5 y=6 width=70 height=8 name=N text=%c font=F size=20 bold=TRUE italic=TRUE "
              "textColour=#000001 align=right valign=top turn=up object=o device=0001:02:03 colour=#FF0000 "
              "borderColour=#0000FF border=3 roundness=40 opacity=128 states=FALSE blink=FALSE "
              "fill=horizontal secondColour=#00FF00 event=checkbox toggle=TRUE key=k keyValue=v user=u "
              "selected=glow selectedColour=#0A0B0C picture=a pressedPicture=b selectedPicture=c "
              "overPicture=d pictureBehind=TRUE keepAspect=FALSE ");
    ASSERT_EQ(button.notes.size(), 1u);
    EXPECT_EQ(button.notes[0].text, "#State#");
    EXPECT_EQ(button.notes[0].align, kAlignCentre);
    EXPECT_EQ(button.notes[0].vertical, kAlignMiddle);
    EXPECT_EQ(button.notes[0].turn, kTurnDown);
    EXPECT_EQ(button.notes[0].scale, 50);
    EXPECT_EQ(button.Pictures().size(), 4u);
    EXPECT_EQ(button.Texts().size(), 2u);
}

TEST_F(MapFile, DefaultsOfEachKind) {
    ASSERT_TRUE(
        Read("<map width='1' height='1'>"
             "<panel x='0' y='0' width='1' height='1'/><label x='0' y='0' width='1' height='1' text='t'/>"
             "<clock x='0' y='0' width='1' height='1'/><button x='0' y='0' width='1' height='1'/>"
             "<picture x='0' y='0' width='1' height='1' picture='p'/>"
             "<alarms x='0' y='0' width='1' height='1'/></map>"));
    EXPECT_EQ(Told(), "");
    ASSERT_EQ(m_map.elements.size(), 6u);
    EXPECT_EQ(m_map.elements[2].text, "%H%:%m%:%s%");
    EXPECT_FALSE(m_map.elements[0].states);
    EXPECT_TRUE(m_map.elements[3].states);
    EXPECT_TRUE(m_map.elements[3].IsClickable());
    EXPECT_FALSE(m_map.elements[0].IsClickable());
    EXPECT_EQ(m_map.elements[5].text, "%c: %t");
    EXPECT_EQ(m_map.elements[5].from, 2);
    EXPECT_EQ(m_map.colour.Or(1), 0u);
    EXPECT_FALSE(m_map.secondColour.IsGiven());
}

TEST_F(MapFile, WhatIsWrongIsToldAndLeftOut) {
    struct Row {
        const char* label;
        const char* text;
        bool map;
        std::size_t elements;
        const char* told;
    };
    const Row rows[] = {
        {"no root of ours", "<a/>", false, 0, "map.xml:1:1: the root element is not \"map\"\n"},
        {"no size", "<map/>", false, 0,
         "map.xml:1:1: attribute \"width\" is missing: a whole number from 1 to 32000\n"
         "map.xml:1:1: attribute \"height\" is missing: a whole number from 1 to 32000\n"},
        {"no height", "<map width='1' height='0'/>", false, 0,
         "map.xml:1:1: attribute \"height\": \"0\" is not a whole number from 1 to 32000\n"},
        {"an unknown element", "<map width='1' height='1'>\n<x/></map>", true, 0,
         "map.xml:2:1: element \"x\" is unknown and is left out\n"},
        {"an element in another case", "<map width='1' height='1'><Panel/></map>", true, 0,
         "map.xml:1:27: element \"Panel\" is unknown and is left out\n"},
        {"no place", "<map width='1' height='1'><panel x='1' y='1' width='4'/></map>", true, 0,
         "map.xml:1:27: attribute \"height\" is missing: a whole number from 1 to 32000; the element is left "
         "out\n"},
        {"an unknown attribute keeps the element",
         "<map width='1' height='1'><clock x='0' y='0' width='1' height='1' event='none'/></map>", true, 1,
         "map.xml:1:27: attribute \"event\" is unknown and has no effect\n"},
        {"a colour that is none",
         "<map width='1' height='1'><label x='0' y='0' width='1' height='1' text='' textColour='red'/></map>",
         true, 1, "map.xml:1:27: attribute \"textColour\": \"red\" is not a colour such as #FF8000\n"},
        {"a note that says nothing",
         "<map width='1' height='1'><label x='0' y='0' width='1' height='1' text=''><note/></label></map>",
         true, 1, "map.xml:1:75: attribute \"text\" is missing: a text with fields\n"},
        {"a note of a picture",
         "<map width='1' height='1'><picture x='0' y='0' width='1' height='1' picture='p'><note text=''/>"
         "</picture></map>",
         true, 1, "map.xml:1:81: element \"note\" is unknown here and is left out\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(Read(row.text), row.map);
        EXPECT_EQ(Told(), row.told);
        EXPECT_EQ(m_map.elements.size(), row.elements);
    }
}

TEST_F(MapFile, FilesThatAreNone) {
    EXPECT_FALSE(ReadMapDocument(m_written.Folder(), m_map, m_problems));
    EXPECT_EQ(m_problems.back().text, "is a folder");
    EXPECT_FALSE(ReadMapDocument(m_written.Path("missing.xml"), m_map, m_problems));
    EXPECT_FALSE(Read(""));
    EXPECT_EQ(m_problems.size(), 1u);
}

TEST_F(MapFile, EveryPrefixOfAMapIsRefusedAndHurtsNobody) {
    const std::string map =
        "<map width='10' height='10'><button x='0' y='0' width='1' height='1' text='%c'>"
        "<note text='a'/></button></map>";
    for (std::size_t length = 0; length < map.size(); ++length) {
        EXPECT_FALSE(Read(map.substr(0, length))) << length;
        EXPECT_FALSE(m_problems.empty()) << length;
    }
    EXPECT_TRUE(Read(map));
}

TEST_F(MapFile, TheNumberOfElementsAndNotesIsLimited) {
    std::string map = "<map width='10' height='10'>";
    for (std::size_t i = 0; i < MapDocument::kMostElements + 5; ++i)
        map += "<panel x='0' y='0' width='1' height='1'/>";
    ASSERT_TRUE(Read(map + "</map>"));
    EXPECT_EQ(m_map.elements.size(), MapDocument::kMostElements);
    EXPECT_EQ(m_problems.size(), 1u);
    map = "<map width='10' height='10'><panel x='0' y='0' width='1' height='1'>";
    for (std::size_t i = 0; i < MapDocument::kMostNotes + 1; ++i) map += "<note text='n'/>";
    ASSERT_TRUE(Read(map + "</panel></map>"));
    EXPECT_EQ(m_map.elements.at(0).notes.size(), MapDocument::kMostNotes);
    EXPECT_EQ(m_problems.size(), 1u);
}

TEST_F(MapFile, ACheckLooksForWhatTheMapAsksFor) {
    RegisterHostTypes();
    struct Row {
        const char* label;
        const char* element;  // behind its place
        const char* told;
    };
    const Row rows[] = {
        {"all is well", "<button object='a' text='{Who} {caption} #0001:01:01,Model# %c' ", ""},
        {"an unknown object", "<button object='b' ", "the site has no object \"b\""},
        {"an unknown device", "<label text='' device='9:9:9' ", "the device 0009:09:09 does not exist"},
        {"a button of nothing", "<button ", "a button needs an object or a device"},
        {"acknowledging needs no device", "<button event='acknowledge' ", ""},
        {"states of nothing", "<panel states='TRUE' ", "\"states\" needs a device, or an object with one"},
        {"a variable nobody has", "<label text='{caption}' ",
         "\"{caption}\" is not resolved (searched: site)"},
        {"a variable no object has", "<label object='a' text='{No}' ",
         "\"{No}\" is not resolved (searched: object a, site)"},
        {"a field nobody has", "<label text='#Colour of hair#' ",
         "no device has the field \"#Colour of hair#\""},
        {"a picture that is missing", "<picture picture='no.png' ", "there is no picture \"no.png\""},
        {"a picture that is there", "<picture picture='MAP.XML' ", ""},
    };
    m_written.WriteObjects({"a"});
    m_written.WriteBehaviour("a", "<PollTrigger/>", "<WriteLogAction Text='x'/>");
    m_written.Write("site.ini",
                    "[Site]\nDevices=devices.ini\nVariables=variables.xml\nMap=map.xml\n[Object a]\n");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_written.Write("map.xml", std::string("<map width='1' height='1'>\n") + row.element +
                                       "x='0' y='0' width='1' height='1'/></map>");
        const CheckReport report = CheckPaths({m_written.Folder()});
        const std::string told = row.told;
        EXPECT_EQ(Joined(report.problems, m_written.Folder()),
                  told.empty() ? "" : "map.xml:2:1: " + told + "\n");
        Problems ofFile;
        SitePlan plan;
        Problems unused;
        ReadSitePlan(m_written.Folder(), plan, unused);
        CheckFileOfSite(plan, m_written.Path("map.xml"), ofFile);
        EXPECT_EQ(Joined(ofFile, m_written.Folder()), told.empty() ? "" : "map.xml:2:1: " + told + "\n");
    }
    m_written.Write("map.xml", "<map width='1' height='1' picture='none.png'/>");
    EXPECT_EQ(Joined(CheckPaths({m_written.Folder()}).problems, m_written.Folder()),
              "map.xml:1:1: there is no picture \"none.png\"\n");
    EXPECT_TRUE(CheckPaths({m_written.Path("map.xml")}).problems.empty()) << "a map of no site";
}

TEST(MapElements, TheDocumentNamesEveryElementAndAttribute) {
    std::ifstream file(BRINDLE_TEST_FOLDER "/../docs/sites.md");
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    const std::size_t begin = text.find("\n## map.xml");
    ASSERT_NE(begin, std::string::npos);
    const std::string section = text.substr(begin, text.find("\n## ", begin + 1) - begin);
    const auto named = [&](const std::string& name) {
        EXPECT_NE(section.find("`" + name + "`"), std::string::npos) << name;
    };
    MapDocument map;
    for (const Attribute& attribute : map.Attributes()) named(attribute.name);
    named(MapNote::kName);
    MapNote note;
    for (const Attribute& attribute : note.Attributes()) named(attribute.name);
    for (int kind = 0; kind <= static_cast<int>(MapKind::kAlarms); ++kind) {
        MapElement element(static_cast<MapKind>(kind));
        named(MapKindName(element.kind));
        EXPECT_EQ(FindMapKind(MapKindName(element.kind)), element.kind);
        for (const Attribute& attribute : element.Attributes()) named(attribute.name);
    }
}

}  // namespace
}  // namespace brindle::host
