#!/bin/sh
# Looks at what a program brings along for the desktop, the reader of its manual and of its help.
# usage: data.sh SOURCE_DIR BUILD_DIR PROGRAM...
set -eu
source=$1
build=$2
shift 2
work=$(mktemp -d "${TMPDIR:-/tmp}/kes-data.XXXXXX")
trap 'rm -rf "$work"' EXIT
fail() { echo "$*" >&2; exit 1; }
cmake --install "$build" --prefix "$work" >/dev/null
share=$work/share

# No licence has been chosen yet, nor has the family a domain from which an identifier could be made.
appstreamcli validate --no-net "$share"/metainfo/*.metainfo.xml >"$work/said" || true
grep -q "Validation" "$work/said" || fail "$(cat "$work/said")"
if grep '^ *[EW]:' "$work/said" | grep -v -e metadata-license-missing -e cid-desktopapp-is-not-rdns; then exit 1; fi
desktop-file-validate "$share"/applications/*.desktop
XDG_DATA_DIRS=$share update-mime-database "$share/mime" 2>"$work/said" || fail "$(cat "$work/said")"
[ ! -s "$work/said" ] || fail "$(cat "$work/said")"
for metadata in "$share"/metainfo/*.metainfo.xml; do
    name=$(basename "$metadata" .metainfo.xml)
    type=$(xmllint --xpath 'string(//mediatype)' "$metadata")
    grep -q "^MimeType=$type;" "$share/applications/$name.desktop" || fail "$name.desktop does not open $type"
    [ -e "$share/mime/$type.xml" ] || fail "$type is not described"
    [ -e "$work/bin/$(xmllint --xpath 'string(//binary)' "$metadata")" ] || fail "$metadata: no such program"
done

# Each option is in the manual, and each one in the manual is an option.
options() { grep -oE -- '--[a-z]+' | sort -u; }
for program; do
    page=$share/man/man1/$(basename "$program").1
    MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l "$page" 2>"$work/said" >"$work/page" || fail "no manual: $page"
    [ ! -s "$work/said" ] || fail "$page: $(cat "$work/said")"
    "$program" --help | options >"$work/options"
    sed -n '/^OPTIONS/,/^E[XN]/p' "$work/page" | options | diff "$work/options" - || fail "$page: other options"
done

# The same bytes from another folder.
if printer=$(command -v weasyprint); then
    mkdir -p "$work/elsewhere/data" "$work/elsewhere/docs/screenshots"
    cp -R "$source/data/help" "$work/elsewhere/data"
    for language in en ru; do
        mkdir "$work/elsewhere/docs/screenshots/$language"
        cp "$source/docs/screenshots/$language/main-window.png" "$work/elsewhere/docs/screenshots/$language"
    done
    python3 "$work/elsewhere/data/help/print.py" "$printer" "$work/elsewhere/data/help/overcurrent.ru-RU.html" "$work/help.pdf"
    cmp "$work/help.pdf" "$share/kesprogram/Help/ru-RU/Overcurrent.pdf"
    pdfimages -list "$work/help.pdf" | grep -q image || fail "the help has lost its picture"
fi
echo "desktop, manual and help are as they should be"
