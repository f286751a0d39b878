// File names and relative paths, in both systems' ways of writing, and as recorded on the other one.
#include "brindle/platform/path_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "testing/vectors.h"

namespace brindle {
namespace {

using nlohmann::json;
using testing::BytesOf;

TEST(FileNameOf, Rows) {
    struct Row {
        const char* path;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"", ""},
        {"f.txt", "f.txt"},
        {"C:\\A\\f.txt", "f.txt"},
        {"/home/x/f.txt", "f.txt"},
        {"A/B\\c", "c"},
        {"C:f.txt", "f.txt"},
        {"C:\\A\\", "A\\"},
        {"/home/x/", "x/"},
        {"C:\\A\\\\", "A\\\\"},
        {"C:\\", "C:\\"},
        {"\\", "\\"},
        {"/", "/"},
        {"\\\\srv\\share", "share"},
        {"C:\\..", ".."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(FileNameOf(row.path), row.expected);
    }
}

TEST(RelativePathTo, Rows) {
    struct Row {
        const char* label;
        const char* from;
        const char* to;
        const char* expected;  // null: none
    };
    const std::vector<Row> rows = {
        {"in the folder", "C:\\A", "C:\\A\\f.txt", ".\\f.txt"},
        {"below it", "C:\\A", "C:\\A\\b\\f.txt", ".\\b\\f.txt"},
        {"beside it", "C:\\A\\B", "C:\\A\\C\\f.txt", "..\\C\\f.txt"},
        {"above it", "C:\\A\\B\\C", "C:\\f.txt", "..\\..\\..\\f.txt"},
        {"a drive", "C:\\", "C:\\f.txt", ".\\f.txt"},
        {"the folder itself", "C:\\A\\B", "C:\\A\\B", "..\\B"},
        {"a folder written as one", "C:\\A", "C:\\A\\", ".\\"},
        {"a base that ends with a separator", "C:\\A\\", "C:\\A\\f.txt", ".\\f.txt"},
        {"other case", "c:\\a", "C:\\A\\f.txt", ".\\f.txt"},
        {"whole names only", "C:\\A", "C:\\AB\\f.txt", "..\\AB\\f.txt"},
        {"other drive", "C:\\A", "D:\\A\\f.txt", nullptr},
        {"a share", "\\\\srv\\s\\d", "\\\\srv\\s\\e\\f.txt", "..\\e\\f.txt"},
        {"another share", "\\\\srv\\s", "\\\\srv2\\s\\f.txt", nullptr},
        {"a relative path", "A\\B", "A\\C\\f.txt", "..\\C\\f.txt"},
        {"relative, nothing common", "A", "f.txt", nullptr},
        {"absolute and relative", "C:\\A", "f.txt", nullptr},
        {"empty", "", "", nullptr},
        {"empty file", "C:\\A", "", nullptr},
        {"Linux: in the folder", "/home/x", "/home/x/f.txt", "./f.txt"},
        {"Linux: beside it", "/home/x", "/home/y/f.txt", "../y/f.txt"},
        {"Linux: up to the root", "/home/x", "/f.txt", "../../f.txt"},
        {"Linux: the root", "/", "/f.txt", "./f.txt"},
        {"Linux: base with a slash behind it", "/home/x/", "/home/x/f.txt", "./f.txt"},
        {"mixed: the steps follow the base", "C:\\A\\B", "C:/A/f.txt", "../f.txt"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::string relative = "before";
        EXPECT_EQ(RelativePathTo(row.from, row.to, relative), row.expected != nullptr);
        EXPECT_EQ(relative, row.expected ? row.expected : "before");
    }
}

TEST(RelativePathTo, LongResultsFail) {
    std::string relative;
    const std::string name(257, 'n');
    EXPECT_TRUE(RelativePathTo("C:\\A", "C:\\A\\" + name, relative));
    EXPECT_EQ(relative.size(), kMostRelativePath);
    EXPECT_FALSE(RelativePathTo("C:\\A", "C:\\A\\" + name + "n", relative));
}

TEST(PathText, AsRecorded) {
    BRINDLE_VECTORS_OR_SKIP(vectors, "relpath.json");
    int compared = 0;
    for (const json& row : vectors["cases"]) {
        if (row.value("unsure", false) || row.value("quirk", false)) continue;
        ++compared;
        if (row["api"] == "PathFindFileNameA") {
            const std::string path = BytesOf(row["path"]);
            SCOPED_TRACE(path);
            EXPECT_EQ(FileNameOf(path), BytesOf(row["name"]));
            continue;
        }
        const std::string from = BytesOf(row["from"]);
        const std::string to = BytesOf(row["to"]);
        SCOPED_TRACE(from + " -> " + to);
        std::string relative;
        EXPECT_EQ(RelativePathTo(from, to, relative), row["ok"].get<bool>());
        EXPECT_EQ(relative, BytesOf(row["text"]));
    }
    EXPECT_GE(compared, 70);
}

TEST(PathText, FullPathsHaveOneSpelling) {
    struct Row {
        const char* label;
        const char* folder;
        const char* path;
        const char* expected;
    };
    const Row rows[] = {
        {"relative", "/site", "a.png", "\\site\\a.png"},
        {"from a drive", "C:\\Site", "pictures/A.png", "C:\\Site\\pictures\\A.png"},
        {"absolute", "/site", "/other/a.png", "\\other\\a.png"},
        {"with a drive", "/site", "D:/x\\a.png", "D:\\x\\a.png"},
        {"of a server", "/site", "\\\\server/share/a.png", "\\\\server\\share\\a.png"},
        {"steps", "/site/map", "../x/./y/../a.png", "\\site\\x\\a.png"},
        {"beyond the root", "/site", "C:\\..\\..\\a.png", "C:\\a.png"},
        {"doubled separators", "/site/", "x//a.png", "\\site\\x\\a.png"},
        {"no folder", "", "a.png", "\\a.png"},
        {"nothing", "/site", "", "\\site"},
        {"the root", "/site", "/", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_EQ(FullPathOf(row.folder, row.path), row.expected);
    }
}

}  // namespace
}  // namespace brindle
