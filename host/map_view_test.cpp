// A map that is alive: what reports change on it, what is drawn anew, the mouse, the keyboard, looks of a skin. Drawn
// on the recording surface, operation by operation.
#include "host/map_view.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "brindle/framework/ui/dc.h"
#include "brindle/platform/fake/recording_surface.h"
#include "host/event_record.h"
#include "host/register_types.h"
#include "host/virtual_clock.h"
#include "host/written_site_test.h"
#include "testing/golden.h"

namespace brindle::host {
namespace {

std::string PlaceText(const CRect& place) {
    return std::to_string(place.left) + "," + std::to_string(place.top) + "-" + std::to_string(place.right) +
           "," + std::to_string(place.bottom);
}

class MapViewTest : public ::testing::Test {
  protected:
    MapViewTest() {
        RegisterHostTypes();
        m_written.WriteObjects({"a"});
        m_written.Write("site.ini",
                        "[Site]\nDevices=devices.ini\nVariables=variables.xml\n[Object a]\nCaption=The A\n"
                        "Address=1:1:1\n[Object b]\nBehaviours=behaviours/a.xml\nAddress=1:1:2\n");
        m_written.Write("devices.ini",
                        "[0001:01:01]\nName=Camera\nState=1\nModel=C3\n[0001:01:02]\nName=Router\nState=1\n"
                        "[0001:01:03]\nName=Fan\nState=0\n");
        m_written.WriteBehaviour("a", "<PollTrigger/>", "<WriteLogAction Text='x'/>");
        Problems problems;
        EXPECT_TRUE(LoadSite(m_written.Folder(), m_site, problems))
            << (problems.empty() ? "" : problems[0].text);
        m_previousClock = SetClock(&m_clock);
        RegisterIBrindleData(&m_site.devices);
    }
    ~MapViewTest() override {
        RegisterIBrindleData(nullptr);
        SetClock(m_previousClock);
    }

    MapView& Show(const std::string& elements, const std::string& look = "") {
        MapDocument document;
        Problems problems;
        EXPECT_TRUE(ReadMapText("<map width='400' height='300'" + look + ">" + elements + "</map>", "map",
                                document, problems));
        EXPECT_TRUE(problems.empty()) << problems[0].text;
        m_view = std::make_unique<MapView>(m_site, document,
                                           [this](const EventLine& line) { m_presses.push_back(line); });
        m_view->Refresh();
        m_view->TakeDirty();
        return *m_view;
    }
    // As the run does: the record first, then the table.
    void Happens(const std::string& line) {
        EventLine event;
        ASSERT_EQ(ParseEventLine(line, event), "");
        const CStateEvent* made = MakeEvent(event, CAddressOv());
        RunRecord record;
        record["kind"] = "event";
        if (!event.object.empty()) record["object"] = event.object;
        DescribeEvent(*made, record);
        m_view->Take(record);
        m_site.devices.Take(*made);
        made->Release();
    }
    void State(const char* address, int state, const char* text = "", bool masked = false) {
        Happens(std::string(R"({"kind":"state","address":")") + address + R"(","state":)" +
                std::to_string(state) + R"(,"text":")" + text + R"(","masked":)" +
                (masked ? "true}" : "false}"));
    }
    // The places to be drawn anew, after a refresh.
    std::string Dirty() {
        m_view->Refresh();
        std::string text;
        for (const CRect& place : m_view->TakeDirty()) text += (text.empty() ? "" : " ") + PlaceText(place);
        return text;
    }
    std::string Drawn(const CRect& place) {
        RecordingSurface surface;
        CDC dc(surface);
        m_view->Draw(dc, place);
        return surface.Text();
    }
    std::string Drawn() {
        const CSize size = m_view->Size();
        return Drawn({0, 0, size.cx, size.cy});
    }
    bool Says(const std::string& text) { return Drawn().find("\"" + text + "\"") != std::string::npos; }
    void Click(CPoint point) {
        m_view->OnMouseMove(point);
        m_view->OnMouseDown(point);
        m_view->OnMouseUp(point);
    }

    WrittenSite m_written;
    Site m_site;
    VirtualClock m_clock{1'714'975'190};
    Clock* m_previousClock = nullptr;
    std::unique_ptr<MapView> m_view;
    std::vector<EventLine> m_presses;
};

const char* const kAt = " x='10' y='20' width='100' height='40' ";

TEST_F(MapViewTest, FieldsOfTexts) {
    struct Row {
        const char* label;
        const char* attributes;
        const char* says;
    };
    const Row rows[] = {
        {"plain", "text='Hello'", "Hello"},
        {"of a device", "device='1:1:1' text='%c %a %i %s #Model#'", "Camera 0001:01:01 1 Green C3"},
        {"of an object", "object='a' text='%c {caption} {Who}'", "Camera The A desk"},
        {"the device goes before the object's", "object='a' device='1:1:2' text='%c'", "Router"},
        {"of another device", "text='#0001:01:02,Name#'", "Router"},
        {"the site's variables", "text='{Who}'", "desk"},
        {"the time", "text='%H%:%m%:%s%'", "05:59:50"},
        {"a percent sign", "text='100%%'", "100%"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Show(std::string("<label x='0' y='0' width='390' height='40' ") + row.attributes + "/>");
        EXPECT_TRUE(Says(row.says)) << Drawn();
    }
}

TEST_F(MapViewTest, OnlyWhatChangedIsDrawnAnew) {
    Show(
        "<label x='0' y='0' width='50' height='20' device='1:1:1' text='%i'/>"
        "<label x='0' y='30' width='50' height='20' text='#0001:01:02,State#'/>"
        "<label x='0' y='60' width='50' height='20' text='{Who}'/>"
        "<clock x='0' y='90' width='50' height='20'/>"
        "<button x='0' y='120' width='50' height='20' device='1:1:1' text='x' border='0' event='none'/>"
        "<panel x='0' y='150' width='50' height='20' device='1:1:3' text='%i'/>");
    EXPECT_EQ(Dirty(), "");
    State("0001:01:01", 2);
    EXPECT_EQ(Dirty(), "0,0-50,20 0,119-51,141") << "its text, and the button by its state";
    State("0001:01:01", 2, "the same state, and nobody shows the text");
    EXPECT_EQ(Dirty(), "");
    State("0001:01:02", 3);
    EXPECT_EQ(Dirty(), "0,30-50,50");
    State("0001:01:03", 1);
    EXPECT_EQ(Dirty(), "0,149-51,171");
    m_site.scope.addVariable(Variable("Who", "nobody"));
    m_view->Take({{"kind", "variable"}, {"name", "Who"}});
    EXPECT_EQ(Dirty(), "0,60-50,80");
    m_clock.MoveTo(900);
    EXPECT_EQ(Dirty(), "") << "the same second";
    m_clock.MoveTo(1'000);
    EXPECT_EQ(Dirty(), "0,90-50,110");
    m_view->Take({{"kind", "log"}, {"text", "nothing of ours"}});
    EXPECT_EQ(Dirty(), "");
    m_view->SetScale(2);
    EXPECT_EQ(Dirty(), "0,0-800,600");
}

TEST_F(MapViewTest, ThePaintedAreaOfALargeMapIsThatOfWhatChanged) {
    std::string elements;
    for (int i = 0; i < 300; ++i)
        elements +=
            "<button x='" + std::to_string(i % 20 * 20) + "' y='" + std::to_string(i / 20 * 20) +
            "' width='14' height='14' text='%i' size='8' event='none' device='1:1:" + (i < 10 ? "1" : "2") +
            "'/>";
    Show(elements);
    State("0001:01:01", 2);
    m_view->Refresh();
    const std::vector<CRect> places = m_view->TakeDirty();
    ASSERT_EQ(places.size(), 10u);
    std::int64_t area = 0;
    std::size_t drawn = 0;
    for (const CRect& place : places) {
        area += std::int64_t{place.Width()} * place.Height();
        const std::string operations = Drawn(place);
        for (std::size_t at = operations.find("\"2\""); at != std::string::npos;
             at = operations.find("\"2\"", at + 1))
            ++drawn;
        EXPECT_EQ(operations.find("\"1\""), std::string::npos) << "a neighbour that did not change";
    }
    EXPECT_EQ(drawn, 10u);
    EXPECT_LE(area, 10 * 18 * 18);
}

// Its top edge tells how wide it is; two pixels more on each side keep smooth edges away.
TEST_F(MapViewTest, AGroundOfOneColourIsFilledWhereItShows) {
    const auto has = [this](const CRect& place, const char* edge) {
        return Drawn(place).find(edge) != std::string::npos;
    };
    Show("", " colour='#102030'");
    EXPECT_TRUE(has({100, 50, 120, 60}, "line 98 48 to 122 48\n"));
    EXPECT_TRUE(has({390, 290, 500, 500}, "line 388 288 to 402 288\n"));
    EXPECT_TRUE(has({0, 0, 400, 300}, "line -1 -1 to 403 -1\n"));
    EXPECT_FALSE(has({400, 0, 500, 300}, "fill"));
    Show("", " colour='#102030' secondColour='#405060'");
    EXPECT_TRUE(has({100, 50, 120, 60}, "fill vertical #FF102030 #FF405060 over -1.5 -1.5 404 304\n"))
        << "where a colour stands depends on the whole";
}

TEST_F(MapViewTest, ManyPlacesBecomeOne) {
    std::string elements;
    for (int i = 0; i < 100; ++i)
        elements +=
            "<label x='" + std::to_string(i) + "' y='0' width='1' height='9' text='%i' device='1:1:1'/>";
    Show(elements);
    State("0001:01:01", 2);
    m_view->Refresh();
    EXPECT_LE(m_view->TakeDirty().size(), 64u);
}

TEST_F(MapViewTest, ScalesAndKeepsNeighboursTogether) {
    MapView& view =
        Show("<panel x='10' y='10' width='15' height='15'/><panel x='25' y='10' width='15' height='15'/>");
    for (const double scale : {0.05, 0.5, 0.75, 1.0, 1.33, 2.0, 20.0}) {
        view.SetScale(scale);
        EXPECT_EQ(view.Size(), (CSize{Scaled(400, scale), Scaled(300, scale)}));
    }
    EXPECT_EQ(Scaled(CRect{10, 10, 25, 25}, 0.75).right, Scaled(CRect{25, 10, 40, 25}, 0.75).left);
    view.SetScale(1e9);
    EXPECT_EQ(view.Scale(), MapView::kLargestScale);
    view.SetScale(0);
    EXPECT_EQ(view.Scale(), MapView::kLeastScale);
    EXPECT_EQ(ScaledBorder(1, 0.1), 1);
    EXPECT_EQ(ScaledBorder(0, 10), 0);
}

TEST_F(MapViewTest, ButtonsSendEvents) {
    struct Row {
        const char* label;
        const char* attributes;
        const char* event;  // kind object address toggle checked key=value user
    };
    const Row rows[] = {
        {"of an object", "object='a'", "button a 0001:01:01 off off = "},
        {"of a device", "device='1:1:3'", "button  0001:01:03 off off = "},
        {"with its texts", "object='b' key='K' keyValue='V' user='U'", "button b 0001:01:02 off off K=V U"},
        {"a toggle", "object='a' toggle='TRUE'", "button a 0001:01:01 on off = "},
        {"a check box", "object='a' event='checkbox'", "checkbox a 0001:01:01 off on = "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Show(std::string("<button") + kAt + row.attributes + "/>");
        m_presses.clear();
        Click({10, 20});
        ASSERT_EQ(m_presses.size(), 1u);
        EventLine line = m_presses[0];
        const bool checkBox = line.kind == EventKind::kCheckBox;
        EXPECT_EQ(std::string(EventKindName(line.kind)) + " " + line.object + " " +
                      line.address.GetString().str() + (line.toggle ? " on" : " off") +
                      (checkBox && line.checked ? " on " : " off ") + line.key.str() + "=" +
                      line.keyValue.str() + " " + line.user.str(),
                  row.event);
    }
}

TEST_F(MapViewTest, TheMouseByPlace) {
    struct Row {
        const char* label;
        CPoint down;
        CPoint up;
        std::size_t presses;
    };
    const Row rows[] = {
        {"inside", {50, 30}, {60, 40}, 1},           {"the first pixel", {10, 20}, {10, 20}, 1},
        {"the last pixel", {109, 59}, {109, 59}, 1}, {"one to the right", {110, 30}, {110, 30}, 0},
        {"let go outside", {50, 30}, {5, 5}, 0},     {"pressed outside", {5, 5}, {50, 30}, 0},
        {"under a label", {20, 25}, {20, 25}, 1},    {"on one that is no button", {210, 30}, {210, 30}, 0},
    };
    Show(std::string("<button object='a'") + kAt +
         "/><label x='10' y='20' width='20' height='20' text='over'/>" +
         "<button object='a' event='none' x='200' y='20' width='50' height='50'/>");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        m_presses.clear();
        m_view->OnMouseMove(row.down);
        m_view->OnMouseDown(row.down);
        m_view->OnMouseDown(row.down);  // another button
        m_view->OnMouseMove(row.up);
        m_view->OnMouseUp(row.up);
        m_view->OnMouseUp(row.up);
        EXPECT_EQ(m_presses.size(), row.presses);
    }
    EXPECT_TRUE(m_view->IsClickable({50, 30}));
    EXPECT_FALSE(m_view->IsClickable({210, 30}));
}

TEST_F(MapViewTest, APressShowsWhileItLasts) {
    Show(std::string("<button object='a' fill='glossy'") + kAt + "/>");
    const std::string before = Drawn();
    m_view->OnMouseDown({50, 30});
    EXPECT_EQ(Dirty(), "8,18-112,62");
    EXPECT_NE(Drawn(), before);
    m_view->OnMouseUp({50, 30});
    EXPECT_EQ(Dirty(), "8,18-112,62");
    EXPECT_EQ(Drawn(), before);
}

TEST_F(MapViewTest, TogglesShowThePositionThatWasReported) {
    Show(std::string("<button object='a' toggle='TRUE' key='K'") + kAt + "/>" +
         "<button object='a' event='checkbox' x='0' y='100' width='10' height='10'/>" +
         "<button device='1:1:2' toggle='TRUE' x='0' y='120' width='10' height='10'/>");
    const auto position = [&](std::size_t target) { return m_view->Targets().at(target).pressedIn; };
    Click({50, 30});
    EXPECT_FALSE(position(0)) << "nothing has happened in the run yet";
    Happens(R"({"kind":"button","object":"a","key":"K","toggle":true})");
    EXPECT_TRUE(position(0));
    EXPECT_EQ(Dirty().find("8,18"), 0u);
    Happens(R"({"kind":"button","object":"a","key":"other","toggle":false})");
    EXPECT_TRUE(position(0));
    m_presses.clear();
    Click({50, 30});
    EXPECT_FALSE(m_presses.at(0).toggle) << "the next press lets it out";
    Happens(R"({"kind":"button","object":"b","key":"K","toggle":false})");
    EXPECT_TRUE(position(0));
    Happens(R"({"kind":"button","object":"a","key":"K","toggle":false})");
    EXPECT_FALSE(position(0));
    Happens(R"({"kind":"checkbox","object":"a","checked":true})");
    EXPECT_TRUE(position(1));
    Happens(R"({"kind":"button","address":"0001:01:02","toggle":true})");
    EXPECT_TRUE(position(2));
}

TEST_F(MapViewTest, StatesHaveTheColoursOfTheSkin) {
    ASSERT_TRUE(m_site.skin.LoadFromStr(
        "<skin><default><button fillstyle='1' fillcoloura='#010203'/></default><red><button "
        "fillcoloura='#0A0B0C'/></red><checked><button fillcoloura='#111213'/></checked></skin>"));
    const MapLook look(m_site.skin);
    EXPECT_EQ(look.Plain().colour, 0x030201u);
    EXPECT_EQ(look.Plain().fill, 1);
    EXPECT_EQ(look.Checked().colour, 0x131211u);
    EXPECT_EQ(look.OfState(3, false).colour, 0x0C0B0Au);
    EXPECT_EQ(look.OfState(7, false).colour, 0x0C0B0Au);
    EXPECT_NE(look.OfState(2, false).colour, look.OfState(1, false).colour);
    EXPECT_NE(look.OfState(1, false).colour, 0x030201u) << "built in, not the mode \"default\"";
    EXPECT_EQ(look.OfState(-3, false), look.OfState(0, false));
    EXPECT_EQ(look.OfState(3, true), look.OfState(0, true));
    Show(std::string("<button device='1:1:1' event='none'") + kAt + "/>");
    EXPECT_EQ(Drawn().find("0A0B0C"), std::string::npos);
    State("0001:01:01", 3);
    m_view->Refresh();
    EXPECT_NE(Drawn().find("0A0B0C"), std::string::npos) << Drawn();
}

TEST_F(MapViewTest, AnotherSkinShowsAtOnce) {
    Show(std::string("<button object='a' states='FALSE'") + kAt + "/>");
    ASSERT_TRUE(m_site.skin.LoadFromStr("<skin><default><button fillcoloura='#0D0E0F'/></default></skin>"));
    m_view->Take({{"kind", "reload"}, {"file", "skin.xml"}});
    EXPECT_NE(Dirty(), "");
    EXPECT_NE(Drawn().find("0D0E0F"), std::string::npos) << Drawn();
}

TEST_F(MapViewTest, UnacknowledgedAlarmsBlink) {
    Show(std::string("<button device='1:1:1' event='none'") + kAt +
         "/><alarms x='0' y='100' width='300' height='100'/>");
    m_view->SetBlink(true);
    EXPECT_EQ(Dirty(), "") << "nothing to blink";
    m_view->SetBlink(false);
    State("0001:01:01", 3, "Lost");
    EXPECT_EQ(Dirty(), "8,18-112,62 0,100-300,200");
    EXPECT_TRUE(Says("Camera: Lost"));
    const std::string lit = Drawn();
    m_view->SetBlink(true);
    EXPECT_EQ(Dirty(), "8,18-112,62 0,100-300,200");
    EXPECT_NE(Drawn(), lit);
    m_view->SetBlink(false);
    m_view->Refresh();
    EXPECT_EQ(Drawn(), lit);
    Drawn();
    Click({20, 110});
    EXPECT_FALSE(m_view->Alarms().HasUnacknowledged());
    Dirty();
    m_view->SetBlink(true);
    EXPECT_EQ(Dirty(), "") << "it is acknowledged";
    State("0001:01:01", 1);
    m_view->Refresh();
    EXPECT_TRUE(m_view->Alarms().Entries().empty());
    EXPECT_FALSE(Says("Camera: Lost"));
}

TEST_F(MapViewTest, AlarmsThatBeginAndEndBetweenTwoDrawingsAreNotLost) {
    Show(
        "<alarms x='0' y='0' width='300' height='100' from='3' text='%c %r %t %i'><note text='%H%:%m%' "
        "align='right'/>"
        "</alarms><button event='acknowledge' text='All' x='0' y='200' width='50' height='50'/>");
    Happens(R"({"kind":"state","address":"0001:01:01","state":4,"header":"Video","text":"Gone"})");
    State("0001:01:01", 1, "Back");
    State("0001:01:02", 2, "below the limit");
    m_view->Refresh();
    EXPECT_TRUE(Says("Camera Video Gone 4")) << Drawn();
    EXPECT_TRUE(Says("05:59"));
    ASSERT_EQ(m_view->Alarms().Entries().size(), 1u);
    Click({10, 210});
    EXPECT_TRUE(m_view->Alarms().Entries().empty());
    State("0009:09:09", 4, "nobody knows that device");
    EXPECT_TRUE(m_view->Alarms().Entries().empty());
}

TEST_F(MapViewTest, AlarmsFromBeforeTheRunCount) {
    m_written.Write("devices.ini", "[0001:01:01]\nName=Camera\nState=3\nText=Old\n");
    m_site = Site();
    Problems problems;
    ASSERT_TRUE(LoadSite(m_written.Folder(), m_site, problems));
    Show("<alarms x='0' y='0' width='300' height='100'/>");
    EXPECT_TRUE(Says("Camera: Old"));
    EXPECT_TRUE(m_view->Alarms().IsUnacknowledged(0x00010101));
}

TEST_F(MapViewTest, TheListOfAlarmsScrolls) {
    std::string devices;
    for (int i = 1; i < 10; ++i)
        devices += "[0002:00:0" + std::to_string(i) + "]\nName=D" + std::to_string(i) + "\n";
    m_written.Write("devices.ini", devices);
    m_site = Site();
    Problems problems;
    ASSERT_TRUE(LoadSite(m_written.Folder(), m_site, problems));
    Show("<alarms x='0' y='0' width='300' height='90'/>");
    for (int i = 1; i < 10; ++i) State(("0002:00:0" + std::to_string(i)).c_str(), 3, "x");
    m_view->Refresh();
    const auto isAt = [&](const char* place) {
        return Drawn().find(std::string("text \"D9: x\" at ") + place) != std::string::npos;
    };
    EXPECT_TRUE(isAt("5 12"));
    Click({295, 85});  // the lower arrow: half a panel
    EXPECT_TRUE(isAt("5 -33"));
    Click({295, 5});
    EXPECT_TRUE(isAt("5 12"));
    Click({295, 85});
    EXPECT_TRUE(isAt("5 -33"));
    m_view->OnMouseDown({295, 45});
    m_view->OnMouseUp({295, 45});
    EXPECT_EQ(m_view->Alarms().Entries().size(), 9u);
    EXPECT_TRUE(m_view->Alarms().HasUnacknowledged());
    // The keyboard reaches every row.
    for (std::size_t i = 0; i < 9; ++i) {
        m_view->SetFocus(i);
        Drawn();
        const CRect bounds = m_view->Targets()[i].bounds;
        EXPECT_GE(bounds.Height(), 40) << i;
        EXPECT_GE(bounds.top, 0) << i;
        EXPECT_LE(bounds.bottom, 90) << i;
    }
    m_view->Press(8);
    m_view->Refresh();
    EXPECT_FALSE(m_view->Alarms().IsUnacknowledged(0x00020001));
    EXPECT_TRUE(m_view->Alarms().IsUnacknowledged(0x00020002));
}

TEST_F(MapViewTest, TheKeyboardReachesWhatCanBePressed) {
    Show(
        "<button object='a' text='One' x='0' y='0' width='50' height='20'/>"
        "<button object='a' text='Lamp' event='none' x='60' y='0' width='50' height='20'/>"
        "<button object='b' name='Two' text='2' x='120' y='0' width='50' height='20' toggle='TRUE'/>"
        "<alarms x='0' y='100' width='300' height='100'/>");
    State("0001:01:03", 3, "hot");
    m_view->Refresh();
    Drawn();
    const std::vector<MapTarget> targets = m_view->Targets();
    ASSERT_EQ(targets.size(), 3u);
    EXPECT_EQ(targets[0].name, "One");
    EXPECT_EQ(targets[1].name, "Two");
    EXPECT_TRUE(targets[1].stays);
    EXPECT_EQ(targets[2].name, "Fan: hot");
    EXPECT_TRUE(targets[2].isAlarm);
    EXPECT_TRUE(targets[2].unacknowledged);
    EXPECT_EQ(PlaceText(targets[2].bounds), "0,100-300,140");
    EXPECT_EQ(m_view->Focus(), std::nullopt);
    m_view->MoveFocus(MapDirection::kNext);
    m_view->MoveFocus(MapDirection::kRight);
    EXPECT_EQ(m_view->Focus(), 1u);
    m_view->TakeDirty();
    m_view->Press(1);
    ASSERT_EQ(m_presses.size(), 1u);
    EXPECT_EQ(m_presses[0].object, "b");
    m_view->MoveFocus(MapDirection::kDown);
    EXPECT_EQ(m_view->Focus(), 2u);
    EXPECT_NE(Dirty(), "") << "the frame around it moves";
    m_view->Press(2);
    m_view->Refresh();
    EXPECT_FALSE(m_view->Targets()[2].unacknowledged);
    m_view->Press(99);
    State("0001:01:03", 0);
    m_view->Refresh();
    EXPECT_EQ(m_view->Focus(), std::nullopt) << "its row has gone";
    EXPECT_EQ(m_view->TargetAt({130, 5}), 1u);
    EXPECT_EQ(m_view->TargetAt({399, 299}), std::nullopt);
}

TEST_F(MapViewTest, AnotherDocumentKeepsAlarmsAndPositions) {
    Show(std::string("<button object='a' toggle='TRUE'") + kAt +
         "/><alarms x='0' y='100' width='300' height='100'/>");
    Happens(R"({"kind":"button","object":"a","toggle":true})");
    State("0001:01:01", 3, "Lost");
    m_view->Refresh();
    m_view->OnMouseDown({50, 30});
    MapDocument document;
    Problems problems;
    ASSERT_TRUE(ReadMapText(
        "<map width='300' height='50'><alarms x='0' y='0' width='300' height='50'/><button object='a' "
        "toggle='TRUE' x='0' y='0' width='10' height='10'/></map>",
        "map", document, problems));
    m_view->Replace(document);
    EXPECT_EQ(Dirty(), "0,0-300,50 0,0-300,50 0,0-12,12");
    EXPECT_TRUE(Says("Camera: Lost"));
    m_view->OnMouseUp({50, 30});
    EXPECT_TRUE(m_view->Targets().back().pressedIn);
}

TEST_F(MapViewTest, TheWholeDrawingOfASmallMap) {
    Show(
        "<panel x='0' y='0' width='60' height='20' text='P' colour='#102030' roundness='0'/>"
        "<button object='a' x='0' y='30' width='60' height='30' text='%c' states='FALSE' fill='solid' "
        "colour='#405060'>"
        "<note text='#Model#' scale='50'/></button>");
    m_view->SetFocus(0);
    testing::ExpectGolden("map_view_small.txt", Drawn());
}

}  // namespace
}  // namespace brindle::host
