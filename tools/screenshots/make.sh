#!/bin/sh
# Takes the pictures in docs/screenshots from the running program, and writes docs/commands.md from commands.md.in.
# usage: tools/screenshots/make.sh [BUILD FOLDER] [PICTURE...]
set -u
root=$(cd "$(dirname "$0")/../.." && pwd)
build=$(cd "${1:-$root/build/release}" && pwd) || exit 1
[ $# -eq 0 ] || shift
for program in kes-overcurrent kes-overcurrent-faulty; do
    [ -x "$build/bin/$program" ] || { echo "$build/bin/$program is missing; build with tests first." >&2; exit 1; }
done
# take SCREEN SET BUILD OUT [PICTURE...]
take() {
    screen=$1
    shift
    KES_SCREEN=$screen "$root/tests/support/headless.sh" /usr/bin/python3 -B "$root/tools/screenshots/take.py" "$@" || exit 1
}
take 1280x1024x24 normal "$build/bin" "$root/docs/screenshots" "$@"
take 1024x600x24 small "$build/bin" "$root/docs/screenshots" "$@"
take 2560x2048x24 double "$build/bin" "$root/docs/screenshots" "$@"
/usr/bin/python3 -B "$root/tools/screenshots/commands.py" "$root/docs/commands.md"
