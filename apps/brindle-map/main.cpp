// The map view. Everything is in map_command.cpp and the files it names.
#include "apps/brindle-map/map_command.h"
#include "apps/brindle/cli.h"

int main(int argc, char** argv) {
    return brindle::tool::RunProgram(
        {"brindle-map", "a station's map, live in a window or as a picture", brindle::map::DeclareMap}, argc,
        argv);
}
