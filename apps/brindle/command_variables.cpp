// brindle variables resolve: replaces the references of a text by the variables of files.
// Tests: tool_test.cpp.
#include <brindle/framework/result.h>
#include <brindle/variables/variable_manager.h>
#include <brindle/xml/xml_reader.h>

#include <deque>

#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"

namespace brindle::tool {
namespace {

struct ResolveOptions {
    std::string text;
    std::vector<std::string> files;
};

// Loads a file into an empty scope. The file is parsed here first, for a message with its place: the scope's own
// message would go to the standard output, among the results.
void LoadScope(const std::string& file, VariableManager& scope) {
    XMLReader reader;
    Result result;
    if (!reader.LoadPositioned(file.c_str(), result))
        throw Failure(kWrongUsage, Place(file, result.line, result.column), result.text);
    if (!reader.EnterSection("Variables", true)) {
        std::uint32_t line = 0, column = 0;
        if (reader.EnterSection("/*", true)) reader.GetPosition(line, column);
        throw Failure(kWrongUsage, Place(file, line, column), "the document is no \"Variables\"");
    }
    if (!scope.load(file)) throw Failure(kWrongUsage, file, "cannot be read as variables");
}

int RunResolve(const ResolveOptions& options) {
    std::deque<VariableManager> scopes;  // innermost first; they keep their places
    for (const std::string& file : options.files) {
        VariableManager& scope = scopes.emplace_back();
        LoadScope(file, scope);
        if (scopes.size() > 1) scopes[scopes.size() - 2].setParent(&scope);
    }
    CStringA text(options.text);
    scopes.front().resolve(text);
    Print(text.view());
    return kAnswered;
}

}  // namespace

void DeclareVariables(Command& tool) {
    auto options = std::make_shared<ResolveOptions>();
    Command& variables =
        tool.Add("variables", kGroupQuestions, "replace the \"{name}\" references of a text");
    Command& resolve = variables.Add("resolve", "Commands", "replace the \"{name}\" references of a text");
    resolve.Text("TEXT", options->text, "the text with its references");
    resolve.ListOption("--file", "FILE", options->files, "variables files, innermost scope first");
    resolve.Note(
        "References that no file answers stay as they are; a text without references is printed as it is. "
        "References are looked for in the first file, and what is left in the next. A \"}\" outside any "
        "reference ends the text, as it does wherever the library resolves.");
    resolve.Example(
        "brindle variables resolve '{LogDir}\\{OnAir}.log' --file examples/sites/studio/variables.xml",
        "D:\\Logs\\camera 1.log");
    resolve.Example("brindle variables resolve '{Dir}' --file object.xml site.xml",
                    "asks object.xml first, then site.xml");
    resolve.Run([options] { return RunResolve(*options); });
}

}  // namespace brindle::tool
