#!/bin/sh
# Installs the build tree and builds a small program against it, by CMake package and by pkg-config.
# usage: check.sh SOURCE_DIR BUILD_DIR COMPILER [COMPILER_FLAGS]
set -eu
source=$1/tests/install
build=$2
compiler=$3
flags=${4:-}
work=$(mktemp -d "${TMPDIR:-/tmp}/kes-install.XXXXXX")
trap 'rm -rf "$work"' EXIT

expected="$(printf 'Авария КЕСТО\nОшибка связи')"
check() {
    [ "$($1)" = "$expected" ] || { echo "$1 printed: $($1)" >&2; exit 1; }
}

cmake --install "$build" --prefix "$work/prefix" >/dev/null
readelf -d "$work"/prefix/lib*/libKesProgram.so "$work"/prefix/lib/*/libKesProgram.so 2>/dev/null |
    grep -q 'soname: \[libKesProgram.so.1\]'

cmake -S "$source" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$work/prefix" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags" >/dev/null
cmake --build "$work/cmake" >/dev/null
check "$work/cmake/ten-lines"

pc=$(dirname "$(find "$work/prefix" -name kesprogram.pc)")
# shellcheck disable=SC2046,SC2086
PKG_CONFIG_PATH=$pc sh -c '"$0" $3 $(pkg-config --cflags kesprogram) "$1" -o "$2" $(pkg-config --libs kesprogram)' \
    "$compiler" "$source/main.cpp" "$work/ten-lines" "$flags"
LD_LIBRARY_PATH=$(PKG_CONFIG_PATH=$pc pkg-config --variable=libdir kesprogram) check "$work/ten-lines"
echo "installed tree serves both builds"
