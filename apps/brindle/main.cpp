// The command-line tool. Everything is in cli.h and the command_*.cpp beside it.
#include "apps/brindle/cli.h"
#include "apps/brindle/commands.h"

namespace brindle::tool {
namespace {

void DeclareTool(Command& tool) {
    DeclareRun(tool);
    DeclareCheck(tool);
    DeclareCreate(tool);
    DeclareAddress(tool);
    DeclareFormat(tool);
    DeclareMacro(tool);
    DeclarePath(tool);
    DeclareVariables(tool);
    DeclareRule(tool);
    DeclareSnmp(tool);
    DeclareSkin(tool);
    DeclareWatch(tool);
    DeclareInfo(tool);
    tool.Note(
        "\"brindle COMMAND --help\" explains a command and shows examples. Results go to the standard "
        "output, "
        "everything else to the standard error. Exit codes: 0 answered, 1 a look-up or check failed or a "
        "difference was found, 2 wrong usage or unreadable input.");
    tool.Example("brindle run examples/sites/studio --fast",
                 "plays a small station in a moment, on a clock that jumps");
    tool.Example("brindle format '%a %c 100%% %i' --address 0001:02:03 --caption X --status 2",
                 "fills the fields of a command line: 0001:02:03 X 100% 2");
    tool.Example("brindle address 12:?:4 --default 1:7:1", "completes an address: 0012:07:04");
}

}  // namespace
}  // namespace brindle::tool

int main(int argc, char** argv) {
    return brindle::tool::RunProgram(
        {"brindle", "behaviours, rules and macros for broadcast control and monitoring",
         brindle::tool::DeclareTool},
        argc, argv);
}
