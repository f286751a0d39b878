#!/bin/bash
# Installs the built library below the build folder, moves the installed tree, and uses it as a stranger would: every
# example is built with find_package and run; hosts are built with pkg-config; the tool answers.
#
# usage: installed_test.sh CMAKE BUILD-FOLDER SOURCE-FOLDER COMPILER
set -euo pipefail
cmake=$1 build=$(realpath "$2") source=$(realpath "$3") compiler=$4
work=$build/installed_test
version=$(sed -n 's/^#define BRINDLE_VERSION_TEXT "\(.*\)"$/\1/p' "$source/brindle/framework/version.h")

fail() { echo "installed_test: $*" >&2; exit 1; }
expect() {  # expect WHAT ACTUAL EXPECTED
    [[ $2 == "$3" ]] || fail "$1: $2"$'\n'"expected: $3"
    echo "$1: as expected"
}
rm -rf "$work"
mkdir "$work"
quietly() { "$@" >>"$work/log" 2>&1 || { tail -20 "$work/log" >&2; fail "$* failed"; }; }

quietly "$cmake" --install "$build" --prefix "$work/first"
mv "$work/first" "$work/moved"  # nothing in the tree may remember where it was installed
root=$work/moved
if grep -rlF "$build" "$root" --include='*.cmake' --include='*.pc' --include='*.h'; then
    fail "an installed file names the build folder"
fi
[[ ! -e $root/include/brindle/platform/files.h ]] || fail "private headers are installed"
if grep -rlE '#include *[<"](libxml|nlohmann|CLI|Q)' "$root/include"; then fail "a header needs more than the library"; fi

# Each component installs its own files and nothing else; together they are everything.
everything=$(cd "$root" && find . ! -type d | sort)
components=
for component in runtime desktop development desktop-development tools map; do
    quietly "$cmake" --install "$build" --prefix "$work/$component" --component "$component"
    [[ ! -d $work/$component ]] || components+=$(cd "$work/$component" && find . ! -type d)$'\n'
done
expect "files of the components" "$(sort <<<"$components" | sed '/^$/d')" "$everything"

# The examples, by find_package.
quietly "$cmake" -S "$source/examples" -B "$work/examples" -G Ninja -DCMAKE_PREFIX_PATH="$root" \
    -DCMAKE_CXX_COMPILER="$compiler"
grep -qF "brindle_DIR:PATH=$root/" "$work/examples/CMakeCache.txt" || fail "the examples use another brindle"
quietly "$cmake" --build "$work/examples"
python3 "$source/tests/examples_test.py" "$work/examples"

# What find_package says of versions and components.
finds() {  # finds ARGUMENTS-OF-FIND_PACKAGE -> found or missing
    rm -rf "$work/find"
    mkdir "$work/find"
    printf 'cmake_minimum_required(VERSION 3.25)\nproject(find CXX)\nfind_package(brindle %s)\n' "$1" \
        >"$work/find/CMakeLists.txt"
    if "$cmake" -S "$work/find" -B "$work/find/build" -G Ninja -DCMAKE_PREFIX_PATH="$root" \
        -DCMAKE_CXX_COMPILER="$compiler" >>"$work/log" 2>&1; then echo found; else echo missing; fi
}
desktop=missing
[[ ! -e $build/lib/libbrindle-qt.so ]] || desktop=found
expect "version ${version%%.*}" "$(finds "${version%%.*} REQUIRED CONFIG")" found
expect "version ${version%%.*}.99" "$(finds "${version%%.*}.99 REQUIRED CONFIG")" missing
expect "the next major version" "$(finds "$((${version%%.*} + 1)) REQUIRED CONFIG")" missing
expect "component qt" "$(finds "REQUIRED COMPONENTS qt")" "$desktop"
expect "a component nobody knows" "$(finds "REQUIRED COMPONENTS nonsense")" missing

# Hosts by pkg-config.
PKG_CONFIG_PATH=$(dirname "$(find "$root" -name brindle.pc)")
export PKG_CONFIG_PATH
LD_LIBRARY_PATH=$(pkg-config --variable=libdir brindle)
export LD_LIBRARY_PATH
expect "pkg-config's version" "$(pkg-config --modversion brindle)" "$version"
# shellcheck disable=SC2046  # the flags are words
quietly "$compiler" "$source/examples/hello/main.cpp" -o "$work/hello" $(pkg-config --cflags --libs brindle)
expect "hello" "$("$work/hello")" "$(cat "$source/examples/hello/expected.txt")"
# A host that derives from exported classes: its types and exceptions cross the library.
# shellcheck disable=SC2046
quietly "$compiler" "$source/tests/installed_host.cpp" -o "$work/installed_host" -Wall -Wextra -Werror \
    $(pkg-config --cflags --libs brindle)
expect "a host with classes of its own" "$("$work/installed_host")" "types and exceptions cross"
if [[ $desktop == found ]]; then
    cat >"$work/desktop.cpp" <<'CODE'
#include <brindle/platform/qt/qt_services.h>
int main() { brindle::InstallQtServices(); }
CODE
    # shellcheck disable=SC2046
    quietly "$compiler" "$work/desktop.cpp" -o "$work/desktop_host" $(pkg-config --cflags --libs brindle-qt)
    "$work/desktop_host" || fail "a desktop host does not start"
fi
unset LD_LIBRARY_PATH

# The version at compile time.
cat >"$work/version.cpp" <<'CODE'
#include <brindle/framework/version.h>
#include <brindle/library/module.h>
#include <cstring>
static_assert(BRINDLE_VERSION == 10000 * BRINDLE_VERSION_MAJOR + 100 * BRINDLE_VERSION_MINOR + BRINDLE_VERSION_PATCH);
int main() { return std::strcmp(BRINDLE_VERSION_TEXT, brindle::Module::Instance().VersionText()); }
CODE
# shellcheck disable=SC2046
quietly "$compiler" "$work/version.cpp" -o "$work/version" $(pkg-config --cflags --libs brindle) "-Wl,-rpath,$(pkg-config --variable=libdir brindle)"
"$work/version" || fail "version.h and the library disagree"

# The tool, where it is part of the build, runs from the moved tree without any path set.
if [[ -x $build/bin/brindle ]]; then
    expect "the tool" "$("$root/bin/brindle" address 12:7:4)" 0012:07:04
    expect "the tool's version" "$("$root/bin/brindle" --version)" "brindle $version"
fi
if [[ -x $build/bin/brindle-map ]]; then
    expect "the map view's version" "$("$root/bin/brindle-map" --version)" "brindle-map $version"
fi
