#!/bin/bash
# Installs the built library below the build folder and compiles a host against it as a stranger would: once
# with find_package, once with pkg-config, and once more after the installed tree was moved.
#
# usage: installed_test.sh CMAKE BUILD-FOLDER SOURCE-FOLDER COMPILER
set -euo pipefail
cmake=$1 build=$2 source=$3 compiler=$4
work=$build/installed_test
expected=$(cat "$source/examples/hello/expected.txt")

fail() { echo "installed_test: $*" >&2; exit 1; }
expect_output() {
    local output
    output=$("$1") || fail "$1 exits with $?"
    [[ $output == "$expected" ]] || fail "$1 printed: $output"
    echo "$1: $output"
}

rm -rf "$work"
"$cmake" --install "$build" --prefix "$work/first" >"$work.log"
mv "$work/first" "$work/moved"  # nothing in the tree may remember where it was installed
root=$work/moved

[[ ! -e $root/include/brindle/platform/files.h ]] || fail "private headers are installed"
if grep -rlE '#include *[<"](libxml|nlohmann|CLI)/' "$root/include"; then fail "a header needs more than the library"; fi

"$cmake" -S "$source/examples/hello" -B "$work/find_package" -G Ninja -DCMAKE_PREFIX_PATH="$root" \
    -DCMAKE_CXX_COMPILER="$compiler" >>"$work.log"
"$cmake" --build "$work/find_package" >>"$work.log"
expect_output "$work/find_package/hello"

PKG_CONFIG_PATH=$(dirname "$(find "$root" -name brindle.pc)")
export PKG_CONFIG_PATH
[[ $(pkg-config --modversion brindle) == "$(sed -n 's/^project(brindle VERSION \([0-9.]*\).*/\1/p' "$source/CMakeLists.txt")" ]] ||
    fail "brindle.pc has the wrong version"
# shellcheck disable=SC2046  # the flags are words
"$compiler" "$source/examples/hello/main.cpp" -o "$work/hello" $(pkg-config --cflags --libs brindle)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir brindle) expect_output "$work/hello"

# The desktop library, where it is part of the build.
if [[ -e $build/lib/libbrindle-qt.so ]]; then
    [[ $(pkg-config --libs brindle-qt) == *-lbrindle-qt*-lbrindle* ]] || fail "brindle-qt.pc is wrong"
    cat >"$work/desktop.cpp" <<'END'
#include <brindle/platform/qt/painter_context.h>
int main() { brindle::InstallQtServices(); }
END
    # shellcheck disable=SC2046
    "$compiler" "$work/desktop.cpp" -o "$work/desktop" $(pkg-config --cflags --libs brindle-qt)
    LD_LIBRARY_PATH=$(pkg-config --variable=libdir brindle) "$work/desktop" || fail "a desktop host does not start"
    cat >"$work/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(desktop CXX)
find_package(brindle REQUIRED)
add_executable(desktop desktop.cpp)
target_link_libraries(desktop brindle::qt)
END
    "$cmake" -S "$work" -B "$work/desktop_build" -G Ninja -DCMAKE_PREFIX_PATH="$root" \
        -DCMAKE_CXX_COMPILER="$compiler" >>"$work.log"
    "$cmake" --build "$work/desktop_build" >>"$work.log"
    "$work/desktop_build/desktop" || fail "a desktop host found by find_package does not start"
fi

# The tool, where it is part of the build, runs from the moved tree without any path set.
if [[ -x $build/bin/brindle ]]; then
    [[ $("$root/bin/brindle" address 12:7:4) == 0012:07:04 ]] || fail "the installed tool does not answer"
fi
