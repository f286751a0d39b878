// Search paths in both directions, on paths written either system's way.
#include "brindle/macro/substitute_path.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "brindle/address/full_address.h"
#include "brindle/macro/macro_observer.h"
#include "brindle/macro/recording_data_test.h"
#include "brindle/platform/environment.h"
#include "brindle/platform/fake/environment_fake.h"
#include "brindle/platform/fake/files_fake.h"
#include "brindle/platform/files.h"
#include "brindle/platform/service.h"

namespace {

using brindle::FakeFiles;
using brindle::testing::RecordingData;
using brindle::testing::ScopedData;
using brindle::testing::ScopedHook;

class SubstitutePaths : public ::testing::Test {
  protected:
    SubstitutePaths() {
        SetSearchPathIniFile("C:\\search.ini");
        m_environment.Set("DATA", "/srv/data");
        m_environment.Set("LONG", std::string(1'500, 'L'));
    }
    ~SubstitutePaths() override { SetSearchPathIniFile(""); }

    void Ini(const std::string& keys) { File("/search.ini", "[SearchPath]\n" + keys); }
    void File(const std::string& path, const std::string& text = "x") {
        m_files.Add(path, FakeFiles::Kind::kFile, text);
    }
    static std::string Expand(const std::string& path, int checkExists = 0, bool format = true,
                              int size = 4096) {
        std::string out(static_cast<std::size_t>(size), '#');
        EXPECT_EQ(GetSubstitutePathEx(path.c_str(), out.data(), size, checkExists, nullptr, "C:\\Schem",
                                      "Cap", "Txt", "Hlp", 2, "Are", nullptr, format, 5, -1),
                  1);
        return out.c_str();
    }

    FakeFiles m_files;
    brindle::FakeEnvironment m_environment;
    brindle::ScopedService<brindle::Files> m_installed{&brindle::SetFiles, m_files};
    brindle::ScopedService<brindle::Environment> m_installedEnvironment{&brindle::SetEnvironment,
                                                                        m_environment};
};

struct Row {
    const char* label;
    const char* keys;
    const char* path;
    const char* expected;
};

TEST_F(SubstitutePaths, Expands) {
    const std::vector<Row> rows = {
        {"nothing to do", "LIB=C:\\A", "C:\\x.dll", "C:\\x.dll"},
        {"empty", "LIB=C:\\A", "", ""},
        {"two directories", "LIB=C:\\A;D:\\B\\", "$LIB$\\x.dll", "C:\\A\\x.dll;D:\\B\\x.dll"},
        {"Linux directories", "LIB=/a;/b/", "$LIB$/x.so", "/a/x.so;/b/x.so"},
        {"names in other case", "LIB=C:\\A", "$lib$\\x", "C:\\A\\x"},
        {"not defined", "LIB=C:\\A", "$NOPE$\\x.dll", "?NOPE?\\x.dll"},
        {"defined as nothing", "LIB=", "$LIB$\\x", "?LIB?\\x"},
        {"an escaped dollar", "", "cost$$5", "cost$5"},
        {"two of them", "", "a$$b$$c", "a$b$c"},
        {"three dollars", "", "a$$$b", "a$$b"},
        {"one dollar", "", "a$b", "a$b"},
        {"escaped before a macro", "LIB=C:\\A", "a$$b $LIB$", "a$b C:\\A"},
        {"escaped in a value", "LIB=C:\\A$$B", "$LIB$\\x", "C:\\A$B\\x"},
        {"nested", "A=$B$\\a\nB=$C$\\b\nC=C:\\c", "$A$\\x", "C:\\c\\b\\a\\x"},
        {"nested, several", "A=$B$\\a\nB=C:\\b;D:\\b", "$A$\\x", "C:\\b\\a\\x;D:\\b\\a\\x"},
        {"two macros in one element", "A=C:\\a\nB=b", "$A$\\$B$\\x", "C:\\a\\b\\x"},
        {"the text before the macro", "A=a;b", "run $A$ x", "run a x;b x"},
        {"elements", "", "$C:\\a;D:\\b", "$C:\\a;D:\\b"},
        {"empty elements vanish", "", "a;;b;", "a;b"},
        {"tails of elements", "", "a\\ \t/;b/\\", "a;b"},
        {"tails of directories", "A=a\\ \t/;b//", "$A$", "a;b"},
        {"separators only", "A=;;;", "$A$\\x", ""},
        {"environment", "A=%DATA%\\a;%data%", "$A$", "/srv/data\\a;/srv/data"},
        {"environment, not set", "A=%NOPE%\\a", "$A$", "%NOPE%\\a"},
        {"an empty name", "LIB=C:\\A", "x $LIB$ $", "x C:\\A $"},
        {"quotes around a value", "LIB=\"C:\\my dir\"", "$LIB$\\x", "C:\\my dir\\x"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Ini(row.keys);
        EXPECT_EQ(Expand(row.path), row.expected);
    }
}

TEST_F(SubstitutePaths, FormatsTheFields) {
    Ini("LIB=C:\\%c;%t\nF=%c");
    EXPECT_EQ(Expand("%c $LIB$\\%i"), "Cap C:\\%c\\2;%t\\2") << "values are not formatted by themselves";
    EXPECT_EQ(Expand("%c $LIB$\\%i", 0, false), "Cap C:\\%c\\%i;%t\\%i") << "the head always is";
    EXPECT_EQ(Expand(".\\tool.exe"), "C:\\Schem\\.\\tool.exe");
    EXPECT_EQ(Expand("%r %n %q %h %p"), "Are 5 %q Hlp C:\\Schem");
    EXPECT_EQ(Expand("100%%"), "100%");
}

// Texts of fields take part in the expansion: documented, and why there is a start filter.
TEST_F(SubstitutePaths, KeptFieldsAreTextLikeAnyOther) {
    Ini("LIB=C:\\A");
    char out[100];
    const auto expand = [&](const char* path, const char* caption) {
        GetSubstitutePath(path, out, sizeof out, 0, nullptr, "", caption, "", "", 0, nullptr, true);
        return std::string(out);
    };
    EXPECT_EQ(expand("run $LIB$\\x %c", "a;b"), "run C:\\A\\x ab") << "separates elements";
    EXPECT_EQ(expand("run %c", "$LIB$"), "run C:\\A") << "names a macro";
    EXPECT_EQ(expand("run %c", "a$$b"), "??b") << "a macro without a name; nothing is escaped any more";
    File("/bin/evil");
    GetSubstitutePath("run %c", out, sizeof out, 1, nullptr, "", ";/bin/evil", "", "", 0, nullptr, true);
    EXPECT_STREQ(out, "/bin/evil") << "becomes a candidate";
}

TEST_F(SubstitutePaths, HashFieldsAndTheHookTakePart) {
    Ini("LIB=C:\\A");
    RecordingData data;
    const ScopedData registered(&data);
    EXPECT_EQ(Expand("#Name# $LIB$\\#File#"), "<Name> C:\\A\\<File>");
    const ScopedHook hook([](CStringA& line) { line.Replace("{lib}", "$LIB$"); });
    EXPECT_EQ(Expand("x {lib}"), "x C:\\A");
}

TEST_F(SubstitutePaths, KeptTheTextBeforeAnUndefinedMacroIsDropped) {
    Ini("A=p");
    EXPECT_EQ(Expand("$A$;x$NOPE$\\y"), "p?NOPE?\\y");
    EXPECT_EQ(Expand("x$NOPE$y"), "x?NOPE?y") << "not the head, which is set aside first";
}

TEST_F(SubstitutePaths, KeptNoSeparatorFollowsTheLastDirectory) {
    Ini("A=p\nB=p;q");
    EXPECT_EQ(Expand("$A$;C:\\y"), "pC:\\y");
    EXPECT_EQ(Expand("$B$;C:\\y"), "p;qC:\\y");
    EXPECT_EQ(Expand("$NOPE$;C:\\y"), "?NOPE?;C:\\y");
}

TEST_F(SubstitutePaths, TheFirstCandidateThatExistsWins) {
    File("/b/x");
    File("/c/x");
    File("/B2/Y.dll");
    const std::vector<Row> rows = {
        {"the second", "A=C:\\a;C:\\b;C:\\c", "$A$\\x", "C:\\b\\x"},
        {"Linux paths", "A=/a;/b;/c", "$A$/x", "/b/x"},
        {"none: all of them", "A=/a;/d", "$A$/x", "/a/x;/d/x"},
        {"a folder counts", "A=/a;/c", "$A$", "/c"},
        {"in other case", "A=C:\\b2", "$A$\\y.DLL", "C:\\b2\\y.DLL"},
        {"without a macro", "", "/a/x;/c/x", "/c/x"},
        {"as it stands, without the head", "A=/a;/c", "run $A$/x", "run /c/x"},
        {"a name with arguments is no file", "A=/b", "$A$/x -v", "/b/x -v"},
        {"an escaped dollar", "A=/a", "/b/x$$;/c/x", "/c/x"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        Ini(row.keys);
        EXPECT_EQ(Expand(row.path, 1), row.expected);
    }
}

TEST_F(SubstitutePaths, TheShortFormHasNoNumbers) {
    char out[20] = "";
    GetSubstitutePath("%n %q", out, sizeof out, 0, nullptr, "", "", "", "", 0, nullptr, true);
    EXPECT_STREQ(out, "%n %q");
}

TEST_F(SubstitutePaths, CutsToTheBuffer) {
    Ini("LIB=C:\\A");
    for (int size = 1; size < 10; ++size) {
        SCOPED_TRACE(size);
        EXPECT_EQ(Expand("$LIB$\\x", 0, true, size),
                  std::string("C:\\A\\x").substr(0, static_cast<std::size_t>(size - 1)));
    }
    char untouched = '#';
    EXPECT_EQ(GetSubstitutePath("x", &untouched, 0, 0, nullptr, "", "", "", "", 0, nullptr, true), 1);
    EXPECT_EQ(GetSubstitutePath("x", nullptr, 10, 0, nullptr, "", "", "", "", 0, nullptr, true), 1);
    EXPECT_EQ(untouched, '#');
    EXPECT_EQ(GetSubstitutePath(nullptr, &untouched, 1, 0, nullptr, "", "", "", "", 0, nullptr, true), 1);
    EXPECT_EQ(untouched, '\0');
    Ini("LIB=%LONG%");
    EXPECT_EQ(Expand("$LIB$"), std::string(1'023, 'L')) << "environment expansions are cut";
    Ini("LIB=" + std::string(1'500, 'v'));
    EXPECT_EQ(Expand("$LIB$"), std::string(1'023, 'v'));
}

TEST_F(SubstitutePaths, TheCallsOwnFileGoesFirst) {
    Ini("LIB=C:\\A");
    File("/other.ini", "[SearchPath]\nLIB=C:\\other\n");
    char out[100];
    GetSubstitutePath("$LIB$", out, sizeof out, 0, nullptr, "", "", "", "", 0, "/other.ini", true);
    EXPECT_STREQ(out, "C:\\other");
    GetSubstitutePath("$LIB$", out, sizeof out, 0, nullptr, "", "", "", "", 0, nullptr, true);
    EXPECT_STREQ(out, "C:\\A");
    Ini("LIB=C:\\changed");
    GetSubstitutePath("$LIB$", out, sizeof out, 0, nullptr, "", "", "", "", 0, nullptr, true);
    EXPECT_STREQ(out, "C:\\changed") << "a changed file is always seen";
}

// Counts the passes of an expansion.
class Watcher final : public IMacroObserver {
  public:
    Watcher() : m_before(RegisterMacroObserver(this)) {}
    Watcher(const Watcher&) = delete;
    Watcher& operator=(const Watcher&) = delete;
    ~Watcher() { RegisterMacroObserver(m_before); }
    void OnSearchPath(const char* name, const char* directories) override {
        log += std::string("look ") + name + "=" + (directories ? directories : "(none)") + ";";
    }
    void OnPass(int pass, const char* text) override {
        passes = pass;
        log += "pass " + std::to_string(pass) + " " + std::string(text).substr(0, 40) + ";";
    }
    void OnEndless(const char*) override { endless = true; }
    void OnCandidate(const char* candidate, bool exists) override {
        log += std::string("try ") + candidate + (exists ? " yes;" : " no;");
    }
    int passes = 0;
    bool endless = false;
    std::string log;

  private:
    IMacroObserver* m_before;
};

TEST_F(SubstitutePaths, EveryExpansionEnds) {
    struct EndRow {
        const char* label;
        const char* keys;
        const char* path;
        std::string expected;
        int passes;
        bool endless;
    };
    std::string deep;
    for (int i = 0; i < 60; ++i) deep += "D" + std::to_string(i) + "=$D" + std::to_string(i + 1) + "$\n";
    deep += "D60=C:\\end\n";
    const std::vector<EndRow> rows = {
        {"its own name: nothing changes", "A=$A$", "$A$", "$A$", 1, false},
        {"two names in turn", "A=$B$\nB=$A$", "$A$", "$A$", 64, true},
        {"longer each time", "A=x$A$", "$A$", std::string(64, 'x') + "$A$", 64, true},
        {"sixty definitions deep", deep.c_str(), "$D0$", "C:\\end", 61, false},
        {"not defined: what stands before the second is dropped", "", "$A$ $B$", "?B?", 2, false},
    };
    for (const EndRow& row : rows) {
        SCOPED_TRACE(row.label);
        Ini(row.keys);
        Watcher watcher;
        EXPECT_EQ(Expand(row.path, 0, true, 70'000), row.expected);
        EXPECT_EQ(watcher.passes, row.passes);
        EXPECT_EQ(watcher.endless, row.endless);
    }
    Ini("A=$A$;$A$");
    Watcher watcher;
    const std::string doubled = Expand("$A$", 0, true, 1'000'000);
    EXPECT_TRUE(watcher.endless);
    EXPECT_LT(watcher.passes, 64);
    EXPECT_GT(doubled.size(), 65'536u);
    EXPECT_LT(doubled.size(), 300'000u);
}

// Beyond the limit only what would have to go on stops.
TEST_F(SubstitutePaths, LongExpansionsThatEndAreWhole) {
    std::string keys = "BIG=";
    for (int i = 0; i < 200; ++i) keys += std::string(1'000, static_cast<char>('a' + i % 26)) + ";";
    Ini(keys);
    Watcher watcher;
    EXPECT_EQ(Expand("$BIG$", 0, true, 1'000'000).size(), 200u * 1'000 + 199);
    EXPECT_FALSE(watcher.endless);
}

TEST_F(SubstitutePaths, TheObserverSeesEveryStep) {
    Ini("A=$B$\\a\nB=/b;/c");
    File("/c/a/x");
    Watcher watcher;
    EXPECT_EQ(Expand("$A$\\x", 1), "/c\\a\\x");
    EXPECT_EQ(watcher.log,
              "look A=$B$\\a;pass 1 $B$\\a\\x;look B=/b;/c;pass 2 /b\\a\\x;/c\\a\\x;try /b\\a\\x no;"
              "try /c\\a\\x yes;");
}

TEST_F(SubstitutePaths, TheObserverSeesEscapedDollarsAsWritten) {
    Ini("A=x$$y");
    Watcher watcher;
    EXPECT_EQ(Expand("$A$ $$5"), "x$y $5");
    EXPECT_EQ(watcher.log, "look A=x$$y;pass 1 x$$y $$5;");
}

TEST_F(SubstitutePaths, ExpandSearchPathsLooksForFiles) {
    Ini("A=/a;/b");
    File("/b/x");
    EXPECT_EQ(ExpandSearchPaths("$A$/x"), "/b/x");
    EXPECT_EQ(ExpandSearchPaths("[%c%t%p%r] %h %i %n"), "[]  0 %n") << "texts are empty, not absent";
    EXPECT_EQ(ExpandSearchPaths(std::string(5'000, 'x').c_str()).GetLength(), 4'095);
}

TEST_F(SubstitutePaths, ResolveHashFieldsFormatsFirst) {
    Ini("A=/a;/b");
    File("/b/<x>");
    RecordingData data;
    const ScopedData registered(&data);
    CStringA out;
    ResolveHashFields("$A$/#x#", out);
    EXPECT_EQ(out, "/b/<x>");
    EXPECT_EQ(data.calls, "x@0000:00:00;");
    ResolveHashFields("%c %i %s", out);
    EXPECT_EQ(out, " 0 Black") << "absent at first, then empty";
    ResolveHashFields("%%%%", out);
    EXPECT_EQ(out, "%") << "formatted twice";
    CStringA both = "$A$/#x#";
    ResolveHashFields(both, both);
    EXPECT_EQ(both, "/b/<x>");
}

TEST_F(SubstitutePaths, FindsTheMacroFormOfAPath) {
    struct FindRow {
        const char* label;
        const char* keys;
        const char* base;
        const char* path;
        int code;
        const char* expected;
    };
    const std::vector<FindRow> rows = {
        {"a macro", "LIB=C:\\A", "C:\\S", "C:\\A\\sub\\f.txt", 2, "$LIB$\\sub\\f.txt"},
        {"a macro on Linux", "LIB=/a", "/s", "/a/sub/f.txt", 2, "$LIB$/sub/f.txt"},
        {"the longer wins", "LIB=C:\\A\nSUB=C:\\A\\sub", "", "C:\\A\\sub\\f.txt", 2, "$SUB$\\f.txt"},
        {"the longer wins, other order", "SUB=C:\\A\\sub\nLIB=C:\\A", "", "C:\\A\\sub\\f.txt", 2,
         "$SUB$\\f.txt"},
        {"ties keep the earlier", "ONE=C:\\A\nTWO=C:\\A", "", "C:\\A\\f", 2, "$ONE$\\f"},
        {"other case", "LIB=c:\\a", "", "C:\\A\\F", 2, "$LIB$\\F"},
        {"a beginning of a name counts", "LIB=C:\\A", "", "C:\\AB\\f", 2, "$LIB$B\\f"},
        {"nested macros", "LIB=$ROOT$\\a\nROOT=C:\\r", "", "C:\\r\\a\\f", 2, "$LIB$\\f"},
        {"several directories never match", "LIB=C:\\A;C:\\B", "", "C:\\A\\f", 0, "C:\\A\\f"},
        {"an empty macro never matches", "LIB=", "", "C:\\A\\f", 0, "C:\\A\\f"},
        {"no base", "", "", "C:\\A\\f", 0, "C:\\A\\f"},
        {"in the base", "", "C:\\A", "c:\\a\\F.txt", 1, "F.txt"},
        {"in the base on Linux", "", "/a", "/a/f.txt", 1, "f.txt"},
        {"a folder of the base", "", "C:\\A", "C:\\A\\b\\f.txt", 3, ".\\b\\f.txt"},
        {"beside the base", "", "C:\\A\\B", "C:\\A\\C\\f.txt", 3, "..\\C\\f.txt"},
        {"beside the base on Linux", "", "/a/b", "/a/c/f.txt", 3, "../c/f.txt"},
        {"another drive", "", "C:\\A", "D:\\f.txt", 4, "D:\\f.txt"},
        {"nothing", "", "C:\\A", "", 4, ""},
    };
    for (const FindRow& row : rows) {
        SCOPED_TRACE(row.label);
        Ini(row.keys);
        CStringA out = "before";
        EXPECT_EQ(FindSubstitutePath(row.base, row.path, out), row.code);
        EXPECT_EQ(out, row.expected);
    }
    Ini("LIB=C:\\A");
    CStringA same = "C:\\A\\f";
    EXPECT_EQ(FindSubstitutePath("", same, same), kPathSubstitute);
    EXPECT_EQ(same, "$LIB$\\f");
    m_files.Add("/there", FakeFiles::Kind::kFolder);
    Ini("LIB=C:\\none;C:\\there");
    EXPECT_EQ(FindSubstitutePath("", "C:\\there\\f", same), 0) << "nor when one of them exists";
    EXPECT_EQ(same, "C:\\there\\f");
}

TEST_F(SubstitutePaths, FindsAmongMoreKeysThanOneChunkHolds) {
    std::string keys;
    for (int i = 0; i < 1'000; ++i) keys += "KEY" + std::to_string(i) + "=C:\\d" + std::to_string(i) + "x\n";
    Ini(keys);
    CStringA out;
    EXPECT_EQ(FindSubstitutePath("", "C:\\d999x\\f", out), kPathSubstitute);
    EXPECT_EQ(out, "$KEY999$\\f");
}

TEST(SubstitutePathSettings, AreKept) {
    EXPECT_EQ(GetGlobalSubPathFlag(), 1) << "1 until set";
    SetGlobalSubPathFlag(0);
    EXPECT_EQ(GetGlobalSubPathFlag(), 0);
    SetGlobalSubPathFlag(1);
    EXPECT_EQ(GetSearchPathIniFile(), "");
    SetSearchPathIniFile("C:\\s.ini");
    EXPECT_EQ(GetSearchPathIniFile(), "C:\\s.ini");
    SetSearchPathIniFile(nullptr);
    EXPECT_EQ(GetSearchPathIniFile(), "");
}

}  // namespace
