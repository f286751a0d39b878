#!/bin/bash
# Makes the Debian packages from the build, installs them into an empty folder, and uses what is there: the examples are
# built against it and run, and the tool, its manual page and its completions are in their places.
#
# usage: package_test.sh CMAKE BUILD-FOLDER SOURCE-FOLDER COMPILER
set -euo pipefail
cmake=$1 build=$(realpath "$2") source=$(realpath "$3") compiler=$4
work=$build/package_test
root=$work/root
version=$(sed -n 's/^#define BRINDLE_VERSION_TEXT "\(.*\)"$/\1/p' "$source/brindle/framework/version.h")
packages=(libbrindle1 libbrindle-dev brindle-tools)
[[ ! -e $build/lib/libbrindle-qt.so ]] || packages+=(libbrindle-qt1 brindle-map)

fail() { echo "package_test: $*" >&2; exit 1; }
quietly() { "$@" >>"$work/log" 2>&1 || { tail -20 "$work/log" >&2; fail "$* failed"; }; }
rm -rf "$work"
mkdir -p "$work"
"$source/scripts/package" "$build"

field() { dpkg-deb -f "$build/packages/$1"_*.deb "$2"; }
[[ $(find "$build/packages" -name '*.deb' | wc -l) == "${#packages[@]}" ]] || fail "there are other packages"
for package in "${packages[@]}"; do
    [[ $(field "$package" Version) == "$version-1" ]] || fail "$package has version $(field "$package" Version)"
    [[ $package == libbrindle1 || $(field "$package" Depends) == *"libbrindle1 (= $version-1)"* ]] ||
        fail "$package works with any library: $(field "$package" Depends)"
done
for needed in libxml2 libsnmp40 libc6; do
    [[ $(field libbrindle1 Depends) == *"$needed "* ]] || fail "libbrindle1 does not ask for $needed"
done
[[ ! -e $build/lib/libbrindle-qt.so || $(field libbrindle-dev Recommends) == qt6-base-dev ]] ||
    fail "libbrindle-dev recommends $(field libbrindle-dev Recommends)"
[[ $(field libbrindle1 Depends)$(field brindle-tools Depends) != *libqt* ]] || fail "a headless host would get Qt"

# dpkg itself unpacks them, as root. The system's own packages are not in the folder, so dependencies are not asked and
# nothing is configured.
mkdir -p "$root/var/lib/dpkg"/{info,updates}
touch "$root/var/lib/dpkg/status"
if ((EUID == 0)); then
    quietly dpkg --root="$root" --force-depends --unpack "$build"/packages/*.deb
    for package in "${packages[@]}"; do
        [[ $(dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${db:Status-Status}' "$package") == unpacked ]] ||
            fail "$package is not installed"
    done
else
    for package in "$build"/packages/*.deb; do quietly dpkg-deb --extract "$package" "$root"; done
fi

library=$(dirname "$(find "$root/usr/lib" -name 'libbrindle.so.?')")
for binary in "$root/usr/bin/brindle" "$library"/*.so.*.*; do
    ! readelf -d "$binary" | grep -q 'R.*PATH' || fail "$binary looks for libraries in a place of its own"
done
[[ $(LD_LIBRARY_PATH=$library "$root/usr/bin/brindle" --version) == "brindle $version" ]] || fail "the tool does not answer"
for package in "${packages[@]}"; do
    for file in copyright changelog.Debian.gz; do
        [[ -s $root/usr/share/doc/$package/$file ]] || fail "$package has no $file"
    done
done
for file in man/man1/brindle.1.gz bash-completion/completions/brindle zsh/vendor-completions/_brindle; do
    [[ -s $root/usr/share/$file ]] || fail "$file is missing"
done

if [[ -e $root/usr/bin/brindle-map ]]; then
    for file in man/man1/brindle-map.1.gz bash-completion/completions/brindle-map zsh/vendor-completions/_brindle-map \
        applications/brindle-map.desktop icons/hicolor/scalable/apps/brindle-map.svg; do
        [[ -s $root/usr/share/$file ]] || fail "$file is missing"
    done
fi

quietly "$cmake" -S "$source/examples" -B "$work/examples" -G Ninja -DCMAKE_PREFIX_PATH="$root/usr" \
    -DCMAKE_CXX_COMPILER="$compiler"
grep -qF "brindle_DIR:PATH=$root/" "$work/examples/CMakeCache.txt" || fail "the examples use another brindle"
quietly "$cmake" --build "$work/examples"
LD_LIBRARY_PATH=$library python3 "$source/tests/examples_test.py" "$work/examples"
