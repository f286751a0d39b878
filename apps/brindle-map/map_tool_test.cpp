// The built brindle-map as a process: pictures without a display, its manners, its refusals.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QtGui/QImage>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "apps/brindle/tool_test_process.h"

namespace brindle::testing {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

const std::string kStudio = std::string(BRINDLE_SOURCE_FOLDER) + "/examples/sites/studio";

class MapTool : public ::testing::Test {
  protected:
    MapTool() {
        std::string name = (std::filesystem::temp_directory_path() / "brindle_map_XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~MapTool() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_folder, ignored);
    }
    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    void Write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name, std::ios::binary) << text;
    }
    using Environment = decltype(ToolStart::environment);
    ToolResult Run(std::vector<std::string> arguments, const std::string& input = {},
                   const Environment& desktop = {}) const {
        ToolStart start{std::move(arguments), input, {{"HOME", m_folder.string()}}, OutputTo::kPipe};
        start.environment.emplace_back("LSAN_OPTIONS", "suppressions=" BRINDLE_LEAKS ":print_suppressions=0");
        start.environment.insert(start.environment.end(), desktop.begin(), desktop.end());
        return RunTool(start);
    }
    // A site with one lamp whose whole body is its device's state.
    void WriteSite(const std::string& more = {}) const {
        Write("site.ini",
              "[Site]\nName=S\nDevices=devices.ini\nMap=map.xml\n" + more + "[Object o]\nBehaviours=b.xml\n");
        Write("devices.ini", "[0001:01:01]\nName=D\nState=1\n");
        Write("b.xml", "<BehaviourList/>");
        Write(
            "map.xml",
            "<map width='200' height='100' colour='#0000FF'><button device='1:1:1' event='none' fill='solid' "
            "x='50' y='20' width='100' height='60'/></map>");
    }

    std::filesystem::path m_folder;
};

TEST_F(MapTool, DrawsAPictureWithoutADisplay) {
    struct Row {
        const char* label;
        std::vector<std::string> arguments;
        int width;
        int height;
    };
    const std::vector<Row> rows = {{"as it is", {}, 1280, 720},
                                   {"smaller", {"--scale", "0.75"}, 960, 540},
                                   {"larger", {"--scale=2"}, 2560, 1440}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::vector<std::string> arguments{kStudio, "--screenshot", Path("map.png")};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const ToolResult result = Run(arguments);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "");
        const QImage picture(QString::fromStdString(Path("map.png")));
        EXPECT_EQ(picture.width(), row.width);
        EXPECT_EQ(picture.height(), row.height);
    }
}

TEST_F(MapTool, APictureShowsTheMomentAskedFor) {
    WriteSite("Recording=e.jsonl\n");
    Write("e.jsonl",
          "{\"t\":1000,\"kind\":\"state\",\"address\":\"0001:01:01\",\"state\":3}\n"
          "{\"t\":5000,\"kind\":\"state\",\"address\":\"0001:01:01\",\"state\":2}\n{\"t\":6000,\"kind\":"
          "\"end\"}\n");
    Write("other.jsonl", "{\"kind\":\"state\",\"address\":\"0001:01:01\",\"state\":3}\n");
    const auto colour = [&](std::vector<std::string> arguments, const std::string& input = {}) {
        arguments.insert(arguments.begin(), {m_folder.string(), "--screenshot", Path("map.png")});
        const ToolResult result = Run(arguments, input);
        EXPECT_EQ(result.code, 0) << result.err;
        return QColor(QImage(QString::fromStdString(Path("map.png"))).pixel(100, 50));
    };
    const QColor green = colour({"--for", "0"});
    const QColor red = colour({"--for", "2"});
    const QColor yellow = colour({});
    EXPECT_GT(green.green(), green.red());
    EXPECT_GT(red.red(), red.green());
    EXPECT_GT(yellow.green(), yellow.blue());
    EXPECT_GT(yellow.red(), yellow.blue());
    EXPECT_EQ(colour({"--events", Path("other.jsonl")}), red);
    EXPECT_EQ(colour({"--events", "-"}, "{\"kind\":\"state\",\"address\":\"0001:01:01\",\"state\":3}\n"),
              red);
    EXPECT_EQ(QColor(QImage(QString::fromStdString(Path("map.png"))).pixel(5, 5)), QColor(Qt::blue));
}

TEST_F(MapTool, ASiteWithoutARecordingHasAPictureToo) {
    WriteSite();
    EXPECT_EQ(Run({m_folder.string(), "--screenshot", Path("map.png")}).code, 0);
    EXPECT_TRUE(std::filesystem::exists(Path("map.png")));
}

TEST_F(MapTool, AWindowOpensAndCloses) {
    WriteSite();
    const ToolResult result = Run({m_folder.string(), "--for", "1"}, {}, {{"QT_QPA_PLATFORM", "offscreen"}});
    EXPECT_EQ(result.code, 0) << result.err;
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST_F(MapTool, TellsWhatItCannotDo) {
    WriteSite();
    Write("broken.xml", "<map width='10'\n");
    struct Row {
        const char* label;
        std::string site;
        std::vector<std::string> arguments;
        std::string error;
        int code;
    };
    const std::string picture = Path("map.png");
    const std::vector<Row> rows = {
        {"no site", Path("nothing"), {}, "brindle-map: " + Path("nothing/site.ini"), 2},
        {"no display", m_folder.string(), {}, "brindle-map: brindle-map: there is no display", 2},
        {"no scale", m_folder.string(), {"--scale", "x"}, "brindle-map: --scale: \"x\" is not a number", 2},
        {"too small", m_folder.string(), {"--scale", "0.01"}, "brindle-map: --scale: \"0.01\"", 2},
        {"too large a picture",
         kStudio,
         {"--screenshot", picture, "--scale", "20"},
         "brindle-map: " + picture + ": a picture of 25600 x 14400 pixels is larger",
         2},
        {"no folder for the picture",
         m_folder.string(),
         {"--screenshot", Path("no/map.png")},
         "brindle-map: " + Path("no/map.png"),
         2},
        {"a negative time", m_folder.string(), {"--for", "-1"}, "brindle-map: --for: \"-1\" is negative", 2},
        {"no events",
         m_folder.string(),
         {"--screenshot", picture, "--events", Path("none")},
         "brindle-map: ",
         2},
        {"a mistyped option", m_folder.string(), {"--screenshto"}, "did you mean --screenshot?", 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::vector<std::string> arguments{row.site};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const ToolResult result = Run(arguments);
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(row.error));
        EXPECT_FALSE(std::filesystem::exists(picture));
    }
    Write("site.ini", "[Site]\nMap=broken.xml\n[Object o]\nBehaviours=b.xml\n");
    EXPECT_THAT(Run({m_folder.string(), "--screenshot", picture}).err,
                StartsWith("brindle-map: " + Path("broken.xml") + ":2"));
    Write("site.ini", "[Site]\n[Object o]\nBehaviours=b.xml\n");
    EXPECT_THAT(Run({m_folder.string(), "--screenshot", picture}).err, HasSubstr("names no \"Map\""));
}

TEST_F(MapTool, ADisplayThatCannotBeHadIsAnErrorAndNoCrash) {
    WriteSite();
    struct Row {
        const char* label;
        Environment desktop;
        std::vector<std::string> arguments;
        std::string error;
    };
    // No server has so large a number.
    const std::vector<Row> rows = {
        {"nobody serves it",
         {{"DISPLAY", ":59535"}},
         {},
         "brindle-map: display: could not connect to display :59535; --screenshot needs none\n"},
        {"no such kind",
         {{"QT_QPA_PLATFORM", "none"}},
         {"--for", "1"},
         "plugin \"none\" in \"\"; --screenshot needs none\n"},
        {"a picture needs none", {{"DISPLAY", ":59535"}}, {"--screenshot", Path("map.png")}, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::vector<std::string> arguments{m_folder.string()};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const ToolResult result = Run(arguments, {}, row.desktop);
        EXPECT_EQ(result.code, row.error.empty() ? 0 : 2);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, EndsWith(row.error));
        EXPECT_TRUE(result.err.empty() || result.err.starts_with("brindle-map: display: "));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), row.error.empty() ? 0 : 1);
    }
}

TEST_F(MapTool, WhatIsWrongInAMapIsToldAndTheRestIsShown) {
    WriteSite();
    Write("map.xml", "<map width='20' height='10'>\n<what/></map>");
    const ToolResult result = Run({m_folder.string(), "--screenshot", Path("map.png")});
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.err,
              "brindle-map: " + Path("map.xml") + ":2:1: element \"what\" is unknown and is left out\n");
}

TEST_F(MapTool, HelpAndVersion) {
    const ToolResult help = Run({"--help"});
    EXPECT_EQ(help.code, 0);
    for (const char* word : {"SITE", "--screenshot FILE", "--scale SCALE", "--events FILE", "--for SECONDS"})
        EXPECT_THAT(help.out, HasSubstr(word));
    EXPECT_EQ(Run({"--version"}).out, "brindle-map " BRINDLE_TOOL_VERSION "\n");
    EXPECT_THAT(Run({}).err, HasSubstr("SITE is missing"));
}

}  // namespace
}  // namespace brindle::testing
