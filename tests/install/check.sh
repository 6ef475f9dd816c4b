#!/bin/sh
# Installs the build tree, looks at what other programs get of it, builds the program of docs/first-program.md
# against it by its CMake package and runs that, and builds a small one by pkg-config.
# usage: check.sh SOURCE_DIR BUILD_DIR COMPILER [COMPILER_FLAGS]
set -eu
source=$1/tests/install
pulse=$1/docs/examples/pulse
build=$2
compiler=$3
flags=${4:-}
work=$(mktemp -d "${TMPDIR:-/tmp}/kes-install.XXXXXX")
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/prefix" >/dev/null
readelf -d "$work"/prefix/lib*/libKesProgram.so "$work"/prefix/lib/*/libKesProgram.so 2>/dev/null |
    grep -q 'soname: \[libKesProgram.so.1\]'
pc=$(dirname "$(find "$work/prefix" -name kesprogram.pc)")
export PKG_CONFIG_PATH="$pc"

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
"$compiler" $flags $(pkg-config --cflags kesprogram) -fkeep-inline-functions "$work/all.cpp" -o "$work/all" \
    $(pkg-config --libs kesprogram)

# Every header compiles on its own, those of widgets with the toolkit made ready for speed; once is enough.
if [ -z "$flags" ]; then
    command="$compiler $(pkg-config --cflags kesprogram)"
    echo '#include <gtkmm.h>' >"$work/toolkit.h"
    # shellcheck disable=SC2086
    $command -x c++-header "$work/toolkit.h" -o "$work/toolkit.h.gch"
    # shellcheck disable=SC2086
    alone() { xargs -P"$(nproc)" -I{} $command -fsyntax-only "$@" -include {} -x c++ /dev/null; }
    find KesCommon KesDriver KesDevice KesTree KesMeasure -name '*.h' ! -path '*/view/*' | alone
    find KesCommonView KesDevice/view KesTreeManager KesTreeRelay KesProgram KesMeasureView KesTestProgram -name '*.h' |
        alone -include "$work/toolkit.h"
fi

cmake -S "$pulse" -B "$work/pulse" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags -Wall -Wextra -Werror" >/dev/null
cmake --build "$work/pulse" >/dev/null
program=$work/pulse/kes-pulse
[ "$("$program" --version)" = 1.0.0 ]
"$source/../support/headless.sh" "$program" --run --speed 100 --save "$work/a.pulse" --screenshot "$work/a.png" --quit
# The relay of the bench closes after exactly 25 ms of the device's time.
{ printf 'PK\003\004'; tail -c +16 "$work/a.pulse"; } >"$work/a.zip" # the archive's signature has 15 bytes
measured=$(unzip -p "$work/a.zip" time 2>/dev/null) || true
[ "$measured" = 25 ] || { echo "measured: '$measured'" >&2; exit 1; }
[ -s "$work/a.png" ]

# shellcheck disable=SC2046,SC2086
"$compiler" $flags $(pkg-config --cflags kesprogram) "$source/main.cpp" -o "$work/ten-lines" \
    $(pkg-config --libs kesprogram)
printed=$(LD_LIBRARY_PATH=$(pkg-config --variable=libdir kesprogram) "$work/ten-lines")
[ "$printed" = "$(printf 'Авария КЕСТО\nОшибка связи')" ] || { echo "ten-lines printed: $printed" >&2; exit 1; }
echo "installed tree serves both builds"
