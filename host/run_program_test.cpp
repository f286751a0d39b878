// Runs whose commands start programs, for real.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <brindle/platform/programs.h>

#include <filesystem>

#include "host/played_site_test.h"
#include "host/written_site_test.h"
#include "testing/program_report.h"

namespace brindle::host {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using testing::ProgramReport;

// A site whose button "a" runs a command; its tools stand on drive C.
class RunProgram : public ::testing::Test {
  protected:
    RunProgram() {
        fs::create_directories(m_site.Path("c/Tools"));
        fs::copy_file(BRINDLE_PROGRAM, m_site.Path("c/Tools/Edit.exe"));
        WriteSite("");
        m_site.Write(
            "macros.ini",
            "[SearchPath]\nLIB = C:\\lib\n[CommandActions]\nEditor = Text editor,C:\\tools\\edit.exe\n");
        m_site.Write("events.jsonl", "");
        m_site.Write("devices.ini", "[0001:02:03]\nName=Camera\n");
    }
    ~RunProgram() override { CurrentPrograms().WaitForAll(); }

    void WriteSite(const std::string& keys) const {
        m_site.Write("site.ini", "[Site]\nMacros=macros.ini\nDevices=devices.ini\nRecording=events.jsonl\n" +
                                     keys + "[Drives]\nC=c\n[Object a]\nAddress=0001:02:03\n");
    }
    auto Press(const std::string& command, const std::string& caption = "Camera 1") const {
        m_site.WriteBehaviour("a", "<ButtonTrigger Name='Press'/>",
                              "<RunCommandAction Command='" + command + "'/>");
        return RunEvents(m_site, "{\"kind\":\"caption\",\"object\":\"a\",\"text\":\"" + caption +
                                     "\"}\n{\"kind\":\"button\",\"object\":\"a\"}");
    }

    WrittenSite m_site;
    ProgramReport m_report{m_site.Path("report.json")};
};

TEST_F(RunProgram, AButtonStartsItsProgramAndWritesOneLogLine) {
    const auto played = Press("&lt;Editor&gt; $LIB$/a.txt \"%c\" %H");
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre("C:\\lib/a.txt", "Camera 1"));
    EXPECT_EQ((*report)["directory"], fs::canonical(m_site.Folder()).string());
    EXPECT_EQ(played.lines.All("program", "line"),
              "C:\\tools\\edit.exe C:\\lib/a.txt \"Camera 1\"," + m_site.Folder() + ",OK");
    EXPECT_EQ(played.lines.All("program", "trigger"), "Press");
    EXPECT_EQ(played.lines.All("command", "line"), "<Editor> $LIB$/a.txt \"Camera 1\" %H");
}

TEST_F(RunProgram, TextsOfDevicesStayOneArgument) {
    Press("&lt;Editor&gt; \"%c\" %H", "; rm -rf x $(id) `id`");
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre("; rm -rf x $(id) `id`"));
}

TEST_F(RunProgram, AQuoteInACaptionIsRefused) {
    const auto played = Press("&lt;Editor&gt; \"%c\" %H", "x\\\" /admin \\\"");
    EXPECT_EQ(
        played.lines.All("program", "line"),
        "C:\\tools\\edit.exe \"x\" /admin \"\"," + m_site.Folder() + ",Refused: 3 arguments instead of 1");
    EXPECT_FALSE(m_report.IsThere());
}

TEST_F(RunProgram, ASiteMayAllowIt) {
    WriteSite("CheckArguments=FALSE\n");
    Press("&lt;Editor&gt; %c %H");
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre("Camera", "1"));
}

TEST_F(RunProgram, ASiteMayOnlyLog) {
    WriteSite("StartPrograms=FALSE\n");
    const auto played = Press("&lt;Editor&gt; %H");
    EXPECT_EQ(played.lines.All("command", "line"), "<Editor> %H");
    EXPECT_EQ(played.lines.All("program", "line"), "");
    EXPECT_FALSE(m_report.IsThere());
}

TEST_F(RunProgram, FailuresAreToldAndLogged) {
    ::testing::internal::CaptureStderr();
    const auto played = Press("&lt;Nope&gt; x");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "brindle: warning: Macro <Nope> is not defined in the Orvane configuration.  Please see "
              "Configuration | "
              "Macro Setup... for the list of all defined macros.\n"
              "brindle: error: Failed to execute command line '<Nope> x'. Returned code 2.\n");
    EXPECT_EQ(played.lines.All("program", "line"), "<Nope> x," + m_site.Folder() + ",File Not Found");
}

}  // namespace
}  // namespace brindle::host
