#include "host/start_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <brindle/macro/macro_observer.h>
#include <brindle/platform/programs.h>

#include <string>
#include <vector>

#include "host/written_site_test.h"

namespace brindle::host {
namespace {

using ::testing::ElementsAreArray;
using Texts = std::vector<std::string>;

TEST(ForeignFields, AreListedOnceAsWritten) {
    struct Row {
        const char* line;
        Texts expected;
    };
    const std::vector<Row> rows = {
        {"a.exe x", {}},
        {"a %c \"%t\" %h %r", {"%c", "%t", "%h", "%r"}},
        {"a %a %N %i %s %n %p %dd%", {}},
        {"a %c %c {x} {x} #f# #f#", {"%c", "{x}", "#f#"}},
        {"a %%c 100%", {}},
        {"a { # }", {"{ # }"}},
        {"a { #", {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line);
        EXPECT_THAT(ForeignFields(row.line), ElementsAreArray(row.expected));
    }
}

TEST(CheckCommand, FindsWhatIsMissing) {
    const WrittenSite site;
    site.Write("macros.ini",
               "[SearchPath]\nBIN=/bin;/usr/bin\nA=$B$\nB=$A$\nNEST=$NOPE$/x\n"
               "[CommandActions]\nTrue=Does nothing,$BIN$/true\nGone=no_such_program -v\n");
    site.Write("notes.txt", "x");
    struct Row {
        const char* label;
        const char* line;
        Texts expected;
    };
    const std::vector<Row> rows = {
        {"a program", "/bin/true x", {}},
        {"by a search path", "$BIN$/true", {}},
        {"by a macro", "<True>", {}},
        {"a document of the site", "notes.txt", {}},
        {"an address", "https://host/x", {}},
        {"named by a field", "{Tool} x", {}},
        {"no such macro", "<Nope> x", {"the macro <Nope> is not defined"}},
        {"no such search path", "$NOPE$/x", {"the search path $NOPE$ is not defined"}},
        {"nested", "/bin/true $NEST$", {"the search path $NOPE$ is not defined"}},
        {"no end", "/bin/true $A$", {"its search paths refer to each other without end"}},
        {"no such program",
         "no_such_program x;/bin/true",
         {"the program \"no_such_program\" does not exist"}},
        {"by a macro, no such program", "<Gone>", {"the program \"no_such_program\" does not exist"}},
        {"nothing", "", {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        EXPECT_THAT(CheckCommand(row.line, {site.Folder(), site.Path("macros.ini"), true}),
                    ElementsAreArray(row.expected));
    }
    EXPECT_THAT(CheckCommand("no_such_program", {site.Folder(), "", false}), ElementsAreArray(Texts{}));
    EXPECT_THAT(CheckSearchPath("NEST", {site.Folder(), site.Path("macros.ini"), true}),
                ElementsAreArray({"the search path $NOPE$ is not defined"}));
    EXPECT_EQ(RegisterMacroObserver(nullptr), nullptr) << "everything is put back";
    EXPECT_EQ(SetPrograms(nullptr), nullptr);
}

}  // namespace
}  // namespace brindle::host
