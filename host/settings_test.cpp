// Settings of a site: edits that touch one value and nothing else, what is refused, and the run that takes them up.
#include "host/settings_site.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "host/poll_plan.h"
#include "host/register_types.h"
#include "host/settings_text.h"
#include "host/site_check.h"
#include "host/written_site_test.h"

namespace brindle::host {
namespace {

TEST(SettingsText, AnIniValueChangesAndNothingElse) {
    struct Row {
        const char* label;
        const char* before;
        const char* key;
        const char* value;
        const char* after;
    };
    const Row rows[] = {
        {"replaced", "; c\n[S]\nK=1\nL=2\n", "K", "9", "; c\n[S]\nK=9\nL=2\n"},
        {"blanks stay", "[S]\n  K  =  1  \nL=2\n", "K", "9", "[S]\n  K  =  9  \nL=2\n"},
        {"case does not matter", "[s]\nk = a b\n", "K", "9", "[s]\nk = 9\n"},
        {"an empty value", "[S]\nK=\nL=2\n", "K", "9", "[S]\nK=9\nL=2\n"},
        {"to an empty value", "[S]\nK = 1\n", "K", "", "[S]\nK = \n"},
        {"ends of lines stay", "[S]\r\nK=1\r\nL=2\r\n", "K", "9", "[S]\r\nK=9\r\nL=2\r\n"},
        {"the last line is open", "[S]\nK=1", "K", "9", "[S]\nK=9"},
        {"a value with =", "[S]\nK=1=2\n", "K", "3=4", "[S]\nK=3=4\n"},
        {"another section's key", "[T]\nK=1\n[S]\nK=2\n", "K", "9", "[T]\nK=1\n[S]\nK=9\n"},
        {"the first section counts", "[S]\nL=1\n[S]\nK=2\n", "K", "9", "[S]\nL=1\nK=9\n[S]\nK=2\n"},
        {"a comment is none", "[S]\n;K=1\n#K=1\nL=2\n", "K", "9", "[S]\n;K=1\n#K=1\nL=2\nK=9\n"},
        {"new, like its neighbours", "[S]\nL = 1\n\n; of T\n[T]\nM=2\n", "K", "9",
         "[S]\nL = 1\nK = 9\n\n; of T\n[T]\nM=2\n"},
        {"new, behind an open line", "[S]\nL=1", "K", "9", "[S]\nL=1\nK=9\n"},
        {"new, in an empty section", "[S]\r\n[T]\r\n", "K", "9", "[S]\r\nK=9\r\n[T]\r\n"},
        {"new section", "[T]\nM=2\n", "K", "9", "[T]\nM=2\n\n[S]\nK=9\n"},
        {"new section, behind an open line", "[T]\nM=2", "K", "9", "[T]\nM=2\n\n[S]\nK=9\n"},
        {"an empty file", "", "K", "9", "[S]\nK=9\n"},
        {"a byte order mark", "\xEF\xBB\xBF[S]\nK=1\n", "K", "9", "\xEF\xBB\xBF[S]\nK=9\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string bytes = row.before;
        SetIniValue(bytes, "S", row.key, row.value);
        EXPECT_EQ(bytes, row.after);
        Problems problems;
        const IniText read(bytes, "f", problems);
        EXPECT_EQ(read.Find("S")->Find("K")->value, row.value);
    }
}

TEST(SettingsText, AColourOfASkinChangesAndNothingElse) {
    struct Row {
        const char* label;
        const char* before;
        const char* after;  // null: refused
    };
    const Row rows[] = {
        {"replaced", "<skin><m><e c='#000000' d='1'/></m></skin>",
         "<skin><m><e c='#123456' d='1'/></m></skin>"},
        {"comments, blanks and quotes stay",
         "<!-- <m><e c='1'/> -->\n<skin a='>'>\n <m >\n  <e\n c = \"#000000\" />\n",
         "<!-- <m><e c='1'/> -->\n<skin a='>'>\n <m >\n  <e\n c = \"#123456\" />\n"},
        {"another state's", "<skin><n><e c='1'/></n><m><f c='1'/><e c='2'/></m></skin>",
         "<skin><n><e c='1'/></n><m><f c='1'/><e c='#123456'/></m></skin>"},
        {"the last one counts", "<skin><m><e c='1'/><e d='2'/></m><m><e c='3'></e></m></skin>",
         "<skin><m><e c='1'/><e d='2'/></m><m><e c='#123456'></e></m></skin>"},
        {"a longer name is another", "<skin><m><e bc='1' c='2' cc='3'/></m></skin>",
         "<skin><m><e bc='1' c='#123456' cc='3'/></m></skin>"},
        {"in a value", "<skin><m><e b=\" c='1'\" c='2'/></m></skin>",
         "<skin><m><e b=\" c='1'\" c='#123456'/></m></skin>"},
        {"deeper is not it", "<skin><m><x><e c='1'/></x></m></skin>", nullptr},
        {"missing", "<skin><m><e d='1'/></m></skin>", nullptr},
        {"a document type", "<!DOCTYPE skin [<!ENTITY x '<'>]><skin><m><e c='1'/></m></skin>", nullptr},
        {"two bytes a character", "\xFF\xFE<skin><m><e c='1'/></m></skin>", nullptr},
        {"CDATA", "<skin><m><![CDATA[<e c='1'/>]]></m></skin>", nullptr},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string bytes = row.before;
        const std::string why = SetSkinText(bytes, "m", "e", "c", "#123456");
        EXPECT_EQ(why.empty(), row.after != nullptr) << why;
        EXPECT_EQ(bytes, row.after ? row.after : row.before);
    }
}

TEST(SettingsText, BrokenDocumentsAreNoTrouble) {
    const std::string whole = "<?x?><!--c--><skin a='1'><m><e c='#000000' d=\"2\"/><![CDATA[x]]></m></skin>";
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        std::string bytes = whole.substr(0, length);
        if (!SetSkinText(bytes, "m", "e", "c", "#123456").empty()) {
            EXPECT_EQ(bytes, whole.substr(0, length));
        }
        SetIniValue(bytes, "S", "K", "1");
        EXPECT_NE(bytes.find("[S]\nK=1\n"), std::string::npos);
    }
}

class SiteSettings : public ::testing::Test {
  protected:
    SiteSettings() {
        RegisterHostTypes();
        m_site.WriteObjects({"a"});
        m_site.WriteBehaviour("a", "<ButtonTrigger/>", "");
        m_site.Write("site.ini",
                     "[Site]\nDevices=devices.ini\nMacros=macros.ini\nSkin=skin.xml\n[Object a]\n");
        m_site.Write("skin.xml", kSkin);
        m_site.Write("macros.ini", kMacros);
        m_site.Write("devices.ini", kDevices);
        Problems problems;
        EXPECT_TRUE(ReadSitePlan(m_site.Folder(), m_plan, problems));
    }
    std::string Text(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(m_site.Path(name), std::ios::binary).rdbuf();
        return text.str();
    }
    Problems Check(const std::string& path) const {
        Problems problems;
        CheckFileOfSite(m_plan, path, problems);
        return problems;
    }
    static constexpr const char* kSkin =
        "<skin>\n <!-- dark -->\n <default><button bordersize=\"2\" fillcoloura=\"#3A424C\"/>"
        "<x colour='nothing' weight='123456'/></default>\n"
        " <pressed><mark colour='#FFB000'/></pressed>\n</skin>\n";
    static constexpr const char* kMacros = "; ours\n[SearchPath]\nTools = C:\\A;C:\\B\n";
    static constexpr const char* kDevices =
        "; all\n[0001:01:01]\nName = T\nAgent = h\nPoll = 2000 \n; what\nPoll.P = "
        "1.3.6\n[0001:01:02]\nName=U\n";

    WrittenSite m_site;
    SitePlan m_plan;
};

TEST_F(SiteSettings, ColoursOfTheSkin) {
    SkinSettings skin(m_plan);
    EXPECT_EQ(skin.Missing(), "");
    ASSERT_EQ(skin.colours.size(), 2u);
    EXPECT_EQ(skin.colours[0].what + " | " + skin.colours[0].state, "Button, first fill colour | Normal");
    EXPECT_EQ(skin.colours[0].colour, 0x4C423Au);
    EXPECT_EQ(skin.colours[1].what + " | " + skin.colours[1].state, "Mark, colour | Pressed");
    skin.colours[0].colour = 0x563412;
    EXPECT_EQ(Text("skin.xml"), kSkin) << "not before it is saved";
    EXPECT_EQ(skin.Save(), "");
    std::string expected = kSkin;
    expected.replace(expected.find("#3A424C"), 7, "#123456");
    EXPECT_EQ(Text("skin.xml"), expected);
    EXPECT_EQ(SkinSettings(m_plan).colours[0].colour, 0x563412u);
    // The file as it is now, and only what differs from what was read.
    m_site.Write("skin.xml", "<skin><default><button fillcoloura='#111111'/></default></skin>");
    skin.colours[0].colour = 0xFF;
    EXPECT_EQ(skin.Save(), "");
    EXPECT_EQ(Text("skin.xml"), "<skin><default><button fillcoloura='#FF0000'/></default></skin>");
    skin.colours[1].colour = 1;
    EXPECT_NE(skin.Save().find("Mark, colour, Pressed: the file does not say it any more"),
              std::string::npos);
    EXPECT_EQ(Text("skin.xml"), "<skin><default><button fillcoloura='#FF0000'/></default></skin>");
}

TEST_F(SiteSettings, Directories) {
    DirectorySettings directories(m_plan);
    ASSERT_EQ(directories.last.size(), 3u);
    ASSERT_EQ(directories.searchPaths.size(), 1u);
    EXPECT_EQ(directories.searchPaths[0].value, "C:\\A;C:\\B");
    directories.searchPaths[0].value = "C:\\C";
    directories.last[0].value = "  C:\\Maps ";
    EXPECT_EQ(directories.Save(), "");
    const std::string expected =
        "; ours\n[SearchPath]\nTools = C:\\C\n\n[Directories]\nLastSchematicDir=C:\\Maps\n";
    EXPECT_EQ(Text("macros.ini"), expected);
    EXPECT_EQ(DirectorySettings(m_plan).last[0].value, "C:\\Maps");
    for (const Problem& problem : Check(m_plan.macros))
        EXPECT_EQ(problem.text.find("Directories"), std::string::npos) << problem.text;
    directories.last[1].value = std::string(260, 'x');
    EXPECT_EQ(directories.Save(), "LastComponentDir: the directory has 260 characters, more than 259.");
    directories.last[1].value = "a\nb";
    EXPECT_EQ(directories.Save(), "LastComponentDir: a directory stands on one line.");
    EXPECT_EQ(Text("macros.ini"), expected);
}

TEST_F(SiteSettings, AnUnknownLastDirectoryIsAProblem) {
    m_site.Write("macros.ini", "[Directories]\nLastSchematicDir=C:\\\nLast=x\n");
    const Problems problems = Check(m_plan.macros);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].text, "key \"Last\" of [Directories] is unknown");
    EXPECT_EQ(problems[0].line, 3u);
}

TEST_F(SiteSettings, Polls) {
    PollSettings polls(m_plan);
    ASSERT_EQ(polls.devices.size(), 1u) << "of the other one nothing is polled";
    PollSettings::Device& device = polls.devices[0];
    EXPECT_EQ(device.name, "T");
    EXPECT_EQ(device.values, (PollSettings::Values{true, "2000", "1000", "1"}));
    device.values = {true, "500", "1000", "3"};
    EXPECT_EQ(polls.Save(), "");
    std::string expected = kDevices;
    expected.replace(expected.find("2000"), 4, "500");
    expected.insert(expected.find("[0001:01:02]"), "Retries = 3\n");
    EXPECT_EQ(Text("devices.ini"), expected);
    device.values = {false, "nonsense", "1000", "3"};
    EXPECT_EQ(polls.Save(), "");
    expected.insert(expected.find("[0001:01:02]"), "Polled = FALSE\n");
    EXPECT_EQ(Text("devices.ini"), expected) << "and the period is still there";
    EXPECT_TRUE(Check(m_plan.devices).empty());
    Problems problems;
    EXPECT_TRUE(ReadPollPlans(IniText(expected, "f", problems), "f", problems).empty());
    EXPECT_EQ(PollSettings(m_plan).devices[0].values, (PollSettings::Values{false, "500", "1000", "3"}));
}

TEST_F(SiteSettings, NumbersThatAreNone) {
    struct Row {
        PollSettings::Values values;
        PollSettings::Field field;
        const char* text;
    };
    const Row rows[] = {
        {{true, "2000", "1000", "1"}, PollSettings::kNone, ""},
        {{true, "99", "1000", "1"},
         PollSettings::kPeriod,
         "Period: \"99\" is no whole number from 100 to 86400000."},
        {{true, "", "1000", "1"},
         PollSettings::kPeriod,
         "Period: \"\" is no whole number from 100 to 86400000."},
        {{true, "2000", "1 s", "1"},
         PollSettings::kTimeout,
         "Timeout: \"1 s\" is no whole number from 1 to 600000."},
        {{true, "2000", "1000", "-1"},
         PollSettings::kRetries,
         "Retries: \"-1\" is no whole number from 0 to 100."},
        {{false, "x", "y", "z"}, PollSettings::kNone, ""},
    };
    PollSettings polls(m_plan);
    for (const Row& row : rows) {
        const PollSettings::Fault fault = PollSettings::Check(row.values);
        EXPECT_EQ(fault.field, row.field) << row.text;
        EXPECT_EQ(fault.text, row.text);
        if (fault.field == PollSettings::kNone) continue;
        polls.devices[0].values = row.values;
        EXPECT_EQ(polls.Save(), std::string("T: ") + row.text);
        EXPECT_EQ(Text("devices.ini"), kDevices);
    }
}

TEST_F(SiteSettings, AnythingButTrueOrFalseIsAProblem) {
    m_site.Write("devices.ini", std::string(kDevices) + "[0001:01:03]\nPolled=maybe\n");
    const Problems problems = Check(m_plan.devices);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].text, "Polled: \"maybe\" is not TRUE or FALSE");
}

TEST_F(SiteSettings, FilesThatAreMissingOrBroken) {
    SitePlan plan = m_plan;
    plan.skin.clear();
    EXPECT_EQ(SkinSettings(plan).Missing(), "The site names no \"Skin\" file in its site.ini.");
    plan.macros.clear();
    EXPECT_EQ(DirectorySettings(plan).Missing(), "The site names no \"Macros\" file in its site.ini.");
    plan.devices = m_site.Path("nowhere.ini");
    EXPECT_NE(PollSettings(plan).Missing().find("nowhere.ini: "), std::string::npos);
    m_site.Write("skin.xml", "<skin><default>");
    EXPECT_NE(SkinSettings(m_plan).Missing().find("skin.xml:1:"), std::string::npos);
    m_site.Write("skin.xml", "<other/>");
    EXPECT_NE(SkinSettings(m_plan).Missing(), "");
    m_site.Write("devices.ini", "[0001:01:02]\nName=U\n");
    EXPECT_NE(PollSettings(m_plan).Missing().find("no device has fields to be polled"), std::string::npos);
}

// A file that cannot be written stays as it is, and the change is not lost.
TEST_F(SiteSettings, AFolderInTheWayOfTheFile) {
    PollSettings polls(m_plan);
    polls.devices[0].values.period = "700";
    std::filesystem::rename(m_site.Path("devices.ini"), m_site.Path("away.ini"));
    std::filesystem::create_directory(m_site.Path("devices.ini"));
    EXPECT_NE(polls.Save(), "");
    std::filesystem::remove(m_site.Path("devices.ini"));
    std::filesystem::rename(m_site.Path("away.ini"), m_site.Path("devices.ini"));
    EXPECT_EQ(Text("devices.ini"), kDevices);
    EXPECT_EQ(polls.Save(), "");
    EXPECT_NE(Text("devices.ini").find("Poll = 700"), std::string::npos);
}

}  // namespace
}  // namespace brindle::host
