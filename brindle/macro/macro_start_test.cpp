// Macro command lines with real programs, files and folders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "brindle/behaviour/action_files.h"
#include "brindle/macro/macro_command.h"
#include "brindle/macro/recording_data_test.h"
#include "brindle/macro/substitute_path.h"
#include "brindle/platform/files.h"
#include "brindle/platform/programs.h"
#include "testing/program_report.h"

namespace {

namespace fs = std::filesystem;
using brindle::testing::ProgramReport;
using brindle::testing::RecordingData;
using brindle::testing::ScopedData;
using ::testing::ElementsAre;

std::string NewFolder() {
    std::string pattern = fs::temp_directory_path() / "brindle_macro_XXXXXX";
    return fs::canonical(mkdtemp(pattern.data()));
}

class MacroStart : public ::testing::Test {
  protected:
    MacroStart() : m_before(fs::current_path()) {
        fs::create_directories(m_folder + "/Schem/Tools");
        fs::create_directories(m_folder + "/Schem/maps");
        fs::copy_file(BRINDLE_PROGRAM, m_folder + "/Schem/Tools/x.exe");
        std::ofstream(m_folder + "/macros.ini")
            << "[SearchPath]\r\nTOOLS=C:\\none;C:\\Schem\\Tools\r\nLIB=C:\\lib\r\n"
               "[CommandActions]\r\nEditor=Editor,C:\\Schem\\tools\\x.exe\r\n";
        brindle::CurrentFiles().MapDrive('C', m_folder);
        SetSearchPathIniFile("C:\\MACROS.INI");
        SetCommandActionsIniFile("C:\\MACROS.INI");
    }
    ~MacroStart() override {
        brindle::CurrentPrograms().WaitForAll();
        brindle::CurrentFiles().MapDrive('C', "");
        SetSearchPathIniFile("");
        SetCommandActionsIniFile("");
        fs::remove_all(m_folder);
    }
    static int Run(const char* line, const char* caption) {
        return ExecuteMacroCommandLine(nullptr, line, nullptr, "C:\\Schem\\Maps", caption, "", "", 0, "", -1,
                                       -1);
    }

    fs::path m_before;
    std::string m_folder = NewFolder();
    RecordingData m_data;
    ScopedData m_registered{&m_data};
    ProgramReport m_report{m_folder + "/report.json"};
};

TEST_F(MacroStart, ASiteOfTheOtherSystemStartsItsPrograms) {
    EXPECT_EQ(Run("<Editor> $LIB$/a.txt %c %H", "Camera"), 33);
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre("C:\\lib/a.txt", "Camera"));
    EXPECT_EQ((*report)["directory"], m_folder + "/Schem/maps");
    EXPECT_EQ(fs::current_path(), m_before);
    EXPECT_EQ(m_data.calls, "log C:\\Schem\\tools\\x.exe C:\\lib/a.txt Camera,C:\\Schem\\Maps,OK;");
}

TEST_F(MacroStart, TheFirstCandidateThatExistsStarts) {
    EXPECT_EQ(Run("$TOOLS$\\X.exe", ""), 33);
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre());
}

TEST_F(MacroStart, TextsOfDevicesStayOneArgument) {
    EXPECT_EQ(Run("C:\\Schem\\Tools\\x.exe \"%c\" end %H", "; rm -rf x $(id) `id`"), 33);
    const auto report = m_report.Wait();
    ASSERT_TRUE(report);
    EXPECT_THAT(ProgramReport::Arguments(*report), ElementsAre("; rm -rf x $(id) `id`", "end"));
}

TEST_F(MacroStart, AFailureIsToldAndLogged) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Run("C:\\none\\x.exe", ""), 3);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "brindle: error: Failed to execute command line 'C:\\none\\x.exe'. Returned code 3.\n");
    EXPECT_EQ(m_data.calls, "log C:\\none\\x.exe,C:\\Schem\\Maps,Path Not Found;");
    EXPECT_EQ(fs::current_path(), m_before);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(Run("<Nope> %H", ""), 2);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "brindle: warning: Macro <Nope> is not defined in the Orvane configuration.  Please see "
              "Configuration | "
              "Macro Setup... for the list of all defined macros.\n"
              "brindle: error: Failed to execute command line '<Nope>'. Returned code 2.\n");
}

}  // namespace
