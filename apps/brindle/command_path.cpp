// brindle path: search paths in both directions. Tests: command_path_test.cpp.
#include <brindle/macro/substitute_path.h>

#include <array>
#include <stdexcept>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"
#include "apps/brindle/macro_options.h"

namespace brindle::tool {
namespace {

struct PathExpandOptions {
    std::string text;
    bool exists = false;
    MacroOptions macros;
};

struct PathFindOptions {
    std::string base;
    std::string full;
    MacroOptions macros;
};

int RunExpand(PathExpandOptions& options) {
    options.macros.Apply();
    FieldOptions& fields = options.macros.fields;
    const FieldSurroundings surroundings(fields);
    const FormatCall& call = fields.call;
    const MacroTrace trace(options.macros.trace);
    std::array<char, 4'096> expanded{};  // as much as a host gets
    try {
        GetSubstitutePathEx(options.text.c_str(), expanded.data(), static_cast<int>(expanded.size()),
                            options.exists, fields.Address(), FieldOptions::Pointer(call.path),
                            FieldOptions::Pointer(call.caption), FieldOptions::Pointer(call.text),
                            FieldOptions::Pointer(call.help), call.status, FieldOptions::Pointer(call.r),
                            nullptr, true, call.n, call.q);
    } catch (const std::invalid_argument&) {
        throw Failure(kFailed, "path expand", "the present time has no local time");
    }
    Print(expanded.data());
    return kAnswered;
}

int RunFind(const PathFindOptions& options) {
    options.macros.Apply();
    const MacroTrace trace(options.macros.trace);
    CStringA found;
    const int code = FindSubstitutePath(options.base, options.full, found);
    Print(std::to_string(code) + " " + found.str());
    return kAnswered;
}

}  // namespace

void DeclarePath(Command& tool) {
    Command& path = tool.Add("path", kGroupQuestions, "expand search paths, or find the one a file lies in");
    auto expandOptions = std::make_shared<PathExpandOptions>();
    Command& expand = path.Add("expand", "Commands", "replace the \"$NAME$\" search paths of a text");
    expand.Text("TEXT", expandOptions->text, "a path or command line");
    expandOptions->macros.Declare(expand);
    expand.Flag("--exists", expandOptions->exists, "print the first candidate that exists, if one does");
    expandOptions->macros.fields.Declare(expand);
    FieldOptions::Explain(expand);
    expand.Note(
        "\";\" separates candidates. A name that is not defined becomes ?NAME?; \"$$\" is a dollar sign.");
    expand.Example("brindle path expand '$LIB$\\x.dll' --ini f.ini",
                   "with LIB=C:\\A;D:\\B\\ in it: C:\\A\\x.dll;D:\\B\\x.dll");
    expand.Run([expandOptions] { return RunExpand(*expandOptions); });

    auto findOptions = std::make_shared<PathFindOptions>();
    Command& find = path.Add("find", "Commands", "the shortest form of a path, for storing");
    find.Text("BASE", findOptions->base, "the folder it may be seen from; may be empty");
    find.Text("FULL", findOptions->full, "the whole path of a file");
    findOptions->macros.Declare(find);
    find.Note(
        "Prints CODE TEXT. CODE 0: no BASE, the path as it is; 1: the file lies in BASE, its name; 2: "
        "through a "
        "search path, $NAME$ and the rest; 3: seen from BASE; 4: none of them, the path as it is.");
    find.Example("brindle path find 'C:\\Maps' 'C:\\A\\sub\\f.txt' --ini f.ini", "2 $LIB$\\sub\\f.txt");
    find.Run([findOptions] { return RunFind(*findOptions); });
}

}  // namespace brindle::tool
