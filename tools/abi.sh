#!/bin/sh
# Compares what the libraries offer to programs that are already compiled with what abi/ says that they offered, so
# that breaking it is a decision; a break takes a new major version, which is the number in the libraries' names.
# It looks at the libraries of build/packages/, as tools/packages.sh has left them there.
# usage: tools/abi.sh [--update]     with --update, abi/ is written again
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh
ensure_packages abigail-tools xz-utils

# Types of other libraries are their affair, and what lies in no installed header is nobody's.
describe() {
    abidw --suppressions abi/others.ini --headers-dir "$headers" --drop-private-types --no-show-locs --no-corpus-path \
        --no-comp-dir-path --no-parameter-names --no-elf-needed --no-write-default-sizes "$1"
}

work=$(mktemp -d "${TMPDIR:-/tmp}/kes-abi.XXXXXX")
trap 'rm -rf "$work"' EXIT
build=$(dirname build/packages/kesprogram/obj-*/kesprogram.pc)
[ -e "$build/kesprogram.pc" ] || { echo "tools/packages.sh has not been run" >&2; exit 1; }
cmake --install "$build" --prefix "$work" --component development >/dev/null
headers=$work/usr/include/kesprogram
[ -e "$headers" ] || headers=$work/include/kesprogram

status=0
[ "${1:-}" != --update ] || rm -f abi/libKes*.abi.xz
for library in "$build"/lib/*/libKes*.so; do
    name=$(basename "$library" .so)
    describe "$library" >"$work/$name.abi"
    if [ "${1:-}" = --update ]; then
        xz -9e -c "$work/$name.abi" >"abi/$name.abi.xz"
    else
        xz -d -c "abi/$name.abi.xz" >"$work/before.abi"
        abidiff --no-added-syms "$work/before.abi" "$work/$name.abi" || status=1
    fi
done
if [ "${1:-}" != --update ]; then
    for dump in abi/libKes*.abi.xz; do
        [ -e "$work/$(basename "$dump" .xz)" ] || { echo "$(basename "$dump" .abi.xz) has gone"; status=1; }
    done
fi
[ $status -eq 0 ] || echo "If that is meant: a new major version of the project, then tools/abi.sh --update" >&2
exit $status
