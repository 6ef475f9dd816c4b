#!/bin/sh
# Installs the build tree, looks at what other programs get of it, and builds a small one against it, by CMake
# package and by pkg-config, and the program of docs/first-program.md, which it runs.
# usage: check.sh SOURCE_DIR BUILD_DIR COMPILER [COMPILER_FLAGS]
set -eu
root=$1
source=$root/tests/install
build=$2
compiler=$3
flags=${4:-}
# The language standard is the program's to choose.
standard=-std=c++20
work=$(mktemp -d "${TMPDIR:-/tmp}/kes-install.XXXXXX")
trap 'rm -rf "$work"' EXIT

expected="$(printf 'Авария КЕСТО\nОшибка связи')"
check() {
    [ "$($1)" = "$expected" ] || { echo "$1 printed: $($1)" >&2; exit 1; }
}

cmake --install "$build" --prefix "$work/prefix" >/dev/null
readelf -d "$work"/prefix/lib*/libKesProgram.so "$work"/prefix/lib/*/libKesProgram.so 2>/dev/null |
    grep -q 'soname: \[libKesProgram.so.1\]'
pc=$(dirname "$(find "$work/prefix" -name kesprogram.pc)")
export PKG_CONFIG_PATH="$pc"
! pkg-config --cflags kesprogram | grep -e -std || exit 1

# A program outside the prefix finds the data by the library, by a folder of shared data and by the variable, and
# its commands are seen without any. Nothing may be said of missing data where there is some.
libraries=$(dirname "$pc")
mkdir -p "$work/outside" "$work/bare"
cp -P "$work"/prefix/*/kes-overcurrent "$work/outside"
cp -PR "$libraries"/libKes*.so* "$libraries/kesprogram" "$work/bare"
ln -s "$libraries" "$work/link"
run() { # LIBRARIES VARIABLE=VALUE...
    libraries_used=$1
    shift
    env LD_LIBRARY_PATH="$libraries_used" "$@" "$work/outside/kes-overcurrent" --language en --run --speed 5000 --quit \
        --report "$work/report.html" --screenshot "$work/window.png" 2>"$work/said"
}
for place in "$libraries " "$work/link " "$work/bare XDG_DATA_DIRS=$work/prefix/share:/usr/share" \
    "$work/bare KES_DATA_DIR=$work/prefix/share/kesprogram"; do
    # shellcheck disable=SC2086
    run $place || { cat "$work/said" >&2; exit 1; }
    if grep -e kesprogram/ -e Gtk-WARNING "$work/said"; then exit 1; fi
done

# What is private is not installed, and what is installed needs nothing private: every declared function is in a
# library, and all that headers define links.
cd "$work/prefix/include/kesprogram"
[ -z "$(find . -name detail)" ]
[ -e KesDriver/simulated/SimulatedNetwork.h ]
# shellcheck disable=SC2046
python3 "$source/exports.py" . $(find "$work/prefix" -name 'libKes*.so')
find . -name '*.h' | sed 's,^\./\(.*\),#include <\1>,' >"$work/all.cpp"
echo 'int main() {}' >>"$work/all.cpp"
# shellcheck disable=SC2046,SC2086
"$compiler" $standard $flags $(pkg-config --cflags kesprogram) -fkeep-inline-functions "$work/all.cpp" -o "$work/all" \
    $(pkg-config --libs kesprogram)

# Every header compiles on its own; once is enough. Those of widgets have the toolkit made ready for speed, so a source
# that begins with its header has shown as much in the build.
unproven() {
    while read -r header; do
        own=$(ls "$root/platform/${header%.h}.cpp" "$root/${header%.h}.cpp" 2>/dev/null) || true
        [ -n "$own" ] && grep -m1 '^#include' "$own" | grep -qF "<$header>" || echo "$header"
    done
}
if [ -z "$flags" ]; then
    command="$compiler $standard $(pkg-config --cflags kesprogram)"
    echo '#include <gtkmm.h>' >"$work/toolkit.h"
    # shellcheck disable=SC2086
    $command -x c++-header "$work/toolkit.h" -o "$work/toolkit.h.gch"
    # shellcheck disable=SC2086
    alone() { xargs -P"$(nproc)" -I{} $command -fsyntax-only "$@" -include {} -x c++ /dev/null; }
    find KesCommon KesDriver KesDevice KesTree KesMeasure -name '*.h' ! -path '*/view/*' | alone
    find KesCommonView KesDevice/view KesTreeManager KesTreeRelay KesProgram KesMeasureView KesTestProgram -name '*.h' |
        unproven | alone -include "$work/toolkit.h"
fi

# A program of other names, and one on a system where the shell lacks a library.
cmake -S "$source" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$work/cmake" >/dev/null
check "$work/cmake/ten-lines"
PKG_CONFIG_PATH= PKG_CONFIG_LIBDIR=/none cmake -S "$source" -B "$work/without" -G Ninja \
    -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" 2>&1 | grep -q "shell. KesProgram needs giomm-2.4"

# The first page, as a newcomer follows it who has what is installed.
documents=$work/prefix/share/doc/KesProgram
awk '/^```sh$/ { on = 1; next } /^```$/ { on = 0 } on' "$documents/docs/first-program.md" >"$work/steps"
(
    cd "$work"
    CMAKE_PREFIX_PATH=$work/prefix CXX=$compiler CXXFLAGS="$flags -Wall -Wextra -Werror" LC_ALL=C.UTF-8 \
        template=$documents/examples/Template pulse=$documents/docs/examples/pulse sh -eu steps >said
) || { cat "$work/said" >&2; exit 1; }
# Its help in step 1 and in step 3.
[ "$(grep -c '^  --run' "$work/said")" = 2 ] && [ "$(grep -c '^  --save' "$work/said")" = 1 ]
! grep -e --report "$work/said" || exit 1
ln -s Pulse/build "$work/pulse"
diff -r -x build "$root/docs/examples/pulse" "$work/Pulse"
[ "$("$work/pulse/kes-pulse" --version)" = 1.0.0 ]
"$source/../support/headless.sh" "$work/pulse/kes-pulse" --run --speed 100 --quit \
    --save "$work/a.pulse" --screenshot "$work/a.png"
[ -s "$work/a.png" ]
"$source/../support/headless.sh" "$work/pulse/kes-pulse" "$work/a.pulse" --save "$work/b.pulse" --quit
cmp "$work/a.pulse" "$work/b.pulse"
{ printf 'PK\003\004'; tail -c +16 "$work/a.pulse"; } >"$work/a.zip" # the archive's signature has 15 bytes
measured=$(unzip -p "$work/a.zip" time 2>/dev/null) || true
# The relay of the bench takes exactly 25 ms of the device's time.
[ "$measured" = 25 ] || { echo "kes-pulse measured: '$measured'" >&2; exit 1; }
code=0
"$source/../support/headless.sh" "$work/pulse/kes-pulse" --run --report "$work/a.html" --quit 2>"$work/said" || code=$?
[ $code = 2 ] && grep -q "no report" "$work/said"

# shellcheck disable=SC2046,SC2086
"$compiler" $standard $flags $(pkg-config --cflags kesprogram) "$source/main.cpp" -o "$work/ten-lines" \
    $(pkg-config --libs kesprogram)
LD_LIBRARY_PATH=$(pkg-config --variable=libdir kesprogram) check "$work/ten-lines"
echo "installed tree serves both builds"
