// The module object, the string resources, the module-state guard and the table of dynamic classes.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <type_traits>

#include "brindle/framework/runtime_classes.h"
#include "brindle/library/module.h"
#include "brindle/library/module_state.h"
#include "brindle/library/string_table.h"

namespace {

using namespace brindle;

TEST(StringTable, Texts) {
    struct Row {
        unsigned id;
        const char* expected;
    };
    const Row rows[] = {
        {0, ""},
        {1, ""},
        {2, "SearchPath"},
        {3,
         "Macro <%s> is not defined in the Orvane configuration. \nPlease see Configuration | Macro Setup... "
         "for "
         "the list of all defined macros."},
        {4, "CommandActions"},
        {6, "Browse for File"},
        {7, ""},
        {8,
         "The current schematic has no name. Please save file first before attempting to find a valid "
         "substitution search path."},
        {9, ""},
        {14, ""},
        {15, "Halvard"},
        {16, "LastSchematicDir"},
        {17, "LastComponentDir"},
        {18, "LastGraphicsDir"},
        {19, "Directories"},
        {20, ""},
        {kTextStatusBlack, "Black"},
        {kTextStatusGreen, "Green"},
        {kTextStatusYellow, "Yellow"},
        {kTextStatusRed, "Red"},
        {0xFFFFFFFF, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.id);
        EXPECT_EQ(LoadStringResource(row.id), row.expected);
    }
}

TEST(StringTable, KeptTheFilterOfInformationFilesLacksItsDot) {
    EXPECT_EQ(LoadStringResource(5),
              "Executable files|*.exe;*.com;*.bat;*.pif|Windows executable files (*.exe)|*.exe|DOS files "
              "(*.com)|*.com|Batch files (*.bat)|*.bat|Program Information files (*.pif)|*pif|All Files "
              "(*.*)|*.*||");
}

TEST(StringTable, StatusColours) {
    struct Row {
        int status;
        const char* expected;
    };
    const Row rows[] = {{-2147483647 - 1, "Black"},
                        {-1, "Black"},
                        {0, "Black"},
                        {1, "Green"},
                        {2, "Yellow"},
                        {3, "Red"},
                        {4, "Red"},
                        {2147483647, "Red"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.status);
        EXPECT_EQ(StatusColourName(row.status), row.expected);
    }
}

TEST(Module, SaysItsNameAndVersion) {
    const Module& module = Module::Instance();
    EXPECT_EQ(&module, &Module::Instance()) << "one object";
    EXPECT_STREQ(module.Name(), "brindle");
    const ModuleVersion version = module.Version();
    EXPECT_EQ(module.VersionText(), std::to_string(version.major) + "." + std::to_string(version.minor) +
                                        "." + std::to_string(version.patch));
    EXPECT_GE(version.major, 1);
}

TEST(ModuleState, TheGuardHoldsNothing) {
    static_assert(std::is_empty_v<ModuleStateGuard> && !std::is_copy_constructible_v<ModuleStateGuard>);
    static_assert(std::is_nothrow_default_constructible_v<ModuleStateGuard>);
    const ModuleStateGuard outer;
    const ModuleStateGuard inner;  // calls nest
    EXPECT_EQ(LoadStringResource(2), "SearchPath");
}

TEST(RuntimeClasses, NamesAreUniqueAndBasesComeAlong) {
    std::set<std::string> names;
    const auto classes = LibraryRuntimeClasses();
    for (const CRuntimeClass* type : classes) {
        SCOPED_TRACE(type->m_lpszClassName);
        EXPECT_TRUE(names.insert(type->m_lpszClassName).second);
        EXPECT_EQ(CRuntimeClass::FromName(type->m_lpszClassName), type);
        EXPECT_TRUE(type->IsDerivedFrom(RUNTIME_CLASS(CObject)));
        EXPECT_TRUE(!type->m_pBaseClass ||
                    std::find(classes.begin(), classes.end(), type->m_pBaseClass) != classes.end());
    }
    EXPECT_TRUE(names.count("CObject") == 1 && names.count("CAddressOv") == 1);
}

}  // namespace
