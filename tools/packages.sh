#!/bin/sh
# Makes the Debian packages in build/packages/ and has lintian look at them. usage: tools/packages.sh
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh
# shellcheck disable=SC2086
ensure_packages $build_packages $run_packages $package_packages

# A copy of the files that belong to the tree, as what makes the packages works within it. It stays for the next
# time, when only what has changed is compiled again.
packages=$PWD/build/packages
mkdir -p "$packages/kesprogram"
rm -f "$packages"/*.deb "$packages"/*.changes "$packages"/*.buildinfo
find "$packages/kesprogram" -mindepth 1 -maxdepth 1 ! -name "obj-*" -exec rm -rf {} +
tar -c --exclude=./build --exclude=./out --exclude=./.git . | tar -x -C "$packages/kesprogram"
cd "$packages/kesprogram"
DEB_BUILD_OPTIONS="parallel=$(nproc) noautodbgsym" dpkg-buildpackage -b -us -uc -nc >"$packages/log" 2>&1 || {
    tail -n 40 "$packages/log" >&2
    exit 1
}
lintian --fail-on error,warning --info --allow-root "$packages"/*.changes
ls "$packages"/*.deb
