#!/bin/sh
# Builds the tree in ways in which ./test does not: with clang and without precompiled headers, every warning an error;
# and with GCC as a part of another project, for folders outside of the prefix.
# usage: tools/other-builds.sh
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh
# shellcheck disable=SC2086
ensure_packages $build_packages $test_packages clang

# Not optimised, as nothing of it is run.
cmake -S . -B build/clang -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Quick -DCMAKE_CXX_FLAGS=-O0 \
    -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DCMAKE_COMPILE_WARNING_AS_ERROR=ON >/dev/null
cmake --build build/clang

mkdir -p build/part
cat >build/part/CMakeLists.txt <<'X'
cmake_minimum_required(VERSION 3.25)
project(Whole LANGUAGES CXX)
add_subdirectory(../.. KesProgram)
add_executable(whole ../../tests/install/main.cpp)
target_link_libraries(whole PRIVATE KesProgram::KesProgram)
X
# Headers are not installed into a source tree.
installed=$(mktemp -d "${TMPDIR:-/tmp}/kes-other.XXXXXX")
trap 'rm -rf "$installed"' EXIT
prefix=$installed/prefix
cmake -S build/part -B build/part/build -G Ninja -DCMAKE_BUILD_TYPE=Quick -DCMAKE_CXX_FLAGS=-O0 \
    -DCMAKE_COMPILE_WARNING_AS_ERROR=ON -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_INSTALL_BINDIR=tools/bin \
    -DCMAKE_INSTALL_LIBDIR="$prefix-libraries" -DCMAKE_INSTALL_INCLUDEDIR="$prefix-headers" \
    -DCMAKE_INSTALL_DATADIR="$prefix-data" >/dev/null
cmake --build build/part/build
build/part/build/whole | grep -q "Ошибка связи"
cmake --install build/part/build >/dev/null
[ "$(PKG_CONFIG_PATH=$prefix-libraries/pkgconfig pkg-config --variable=libdir kesprogram)" = "$prefix-libraries" ]
[ "$(PKG_CONFIG_PATH=$prefix-libraries/pkgconfig pkg-config --variable=includedir kesprogram)" = "$prefix-headers/kesprogram" ]
for program in build/part/build/KesProgram/root"$prefix"/tools/bin/kes-overcurrent "$prefix/tools/bin/kes-overcurrent"; do
    tests/support/headless.sh "$program" --language en --run --speed 5000 --report build/part/report.html --quit \
        2>build/part/said || { cat build/part/said >&2; exit 1; }
    if grep -e kesprogram/ build/part/said; then exit 1; fi
done
echo "The other builds are well"
