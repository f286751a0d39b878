// The command-line tool. Everything is in cli.h and the command_*.cpp beside it.
#include "apps/brindle/cli.h"

int main(int argc, char** argv) {
    return brindle::tool::RunTool(argc, argv);
}
