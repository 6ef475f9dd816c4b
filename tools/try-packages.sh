#!/bin/sh
# Installs the packages in build/packages/ into an empty Debian 12 and looks at the toolbar of a program there: Start
# and Stop have to be seen, with their pictures. As root; it needs the network and takes some minutes.
# usage: tools/try-packages.sh [MIRROR]
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh
# shellcheck disable=SC2086
ensure_packages debootstrap imagemagick $headless_packages

if [ -z "${KES_EMPTY:-}" ]; then
    KES_EMPTY=$(mktemp -d "${TMPDIR:-/tmp}/kes-empty.XXXXXX")
    export KES_EMPTY
    # What is mounted goes with the name space, before the folder is removed.
    code=0
    unshare -m "$0" "$@" || code=$?
    rm -rf --one-file-system "$KES_EMPTY"
    exit $code
fi

packages=$PWD/build/packages
pictures=$packages/pictures
root=$KES_EMPTY/root
log=$packages/try.log
mkdir -p "$pictures"
inside() { env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root DEBIAN_FRONTEND=noninteractive "$@"; }
trap 'code=$?; [ $code -eq 0 ] || tail -n 20 "$log" >&2; exit $code' EXIT

echo "Making an empty Debian 12 ..."
debootstrap --variant=minbase bookworm "$root" "${1:-http://deb.debian.org/debian}" >"$log" 2>&1
mount -t proc proc "$root/proc"
mkdir -p "$root/packages" "$root/tmp/.X11-unix"
cp "$packages"/*.deb "$root/packages"

# Only what the packages ask for: a dependency that is missing shows.
echo "Installing ..."
inside chroot "$root" sh -c 'apt-get -qq update &&
    apt-get -qq -y --no-install-recommends install /packages/*.deb' >>"$log" 2>&1
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"

for language in en ru; do
    # shellcheck disable=SC2016
    tests/support/headless.sh sh -c 'cp "$XAUTHORITY" "$1/xauthority" &&
        env -i PATH=/usr/sbin:/usr/bin:/bin HOME=/root DISPLAY="$DISPLAY" XAUTHORITY=/xauthority \
        chroot "$1" kes-overcurrent --language "$2" --screenshot /window.png --quit' look "$root" $language \
        >"$KES_EMPTY/said" 2>&1 || { cat "$KES_EMPTY/said" >&2; exit 1; }
    if grep -e kesprogram/ -e Gtk-WARNING "$KES_EMPTY/said"; then exit 1; fi
    mv "$root/window.png" "$pictures/$language.png"
    convert "$pictures/$language.png" -depth 8 "$KES_EMPTY/window.ppm"
    python3 tools/find_commands.py "$KES_EMPTY/window.ppm"
done
# The simulator runs without a display, and every manual is there.
inside chroot "$root" kesto-sim --version
[ "$(find "$root/usr/share/man/man1" -name 'kes*.1.gz' | wc -l)" -eq 3 ]
echo "The packages work; the windows are in $pictures"
