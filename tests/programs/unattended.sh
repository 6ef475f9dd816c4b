#!/bin/bash
# Runs programs as a user without a screen would and checks exit statuses, files and messages.
# usage: unattended.sh FOLDER-OF-THE-PROGRAMS; on an X server, with a home to fill.
set -u
. "$(dirname "$0")/../support/programs.sh"
template=$1/kes-template

# expect STATUS PROGRAM ARGUMENT...: standard error goes to the file err.
expect() {
    local expected=$1 status
    shift
    timeout 60 "$@" >out 2>err
    status=$?
    [ $status -eq "$expected" ] || fail "status $status instead of $expected: $* ($(cat err))"
    ! grep -q "kesprogram/" err || fail "data is missing: $(cat err)"
}

holds() {
    grep -qF -- "$2" "$1" || fail "\"$2\" is not in $1: $(head -c 400 "$1")"
}

echo "A run that passes, its files, and their second reading"
expect 0 "$overcurrent" --language en --run --speed 5000 --save a.kovc --report a.html --screenshot a.png --quit
[ "$(head -c 8 a.png | od -An -tx1 | tr -d ' ')" = 89504e470d0a1a0a ] || fail "the screenshot is no PNG"
holds a.html "SIMULATED DEVICE"
mkdir again comma # a report tells the name of its archive
expect 0 "$overcurrent" --language en a.kovc --report again.html --save again/a.kovc --quit
cmp a.html again.html || fail "the report of the archive differs from that of the run"
cmp a.kovc again/a.kovc || fail "the archive differs after opening and saving"
expect 0 "$overcurrent" --language ru a.kovc --report ru.html --quit
holds ru.html "ИМИТИРУЕМОЕ УСТРОЙСТВО"
rm -rf "$XDG_CACHE_HOME/kes"
expect 0 "$overcurrent" --language en a.kovc --report fresh.html --quit
cmp a.html fresh.html || fail "the report of a first start differs"

if localedef -i ru_RU -f UTF-8 "$work/ru_RU.UTF-8" >/dev/null 2>&1; then
    echo "A locale of decimal commas"
    LOCPATH=$work LC_ALL=ru_RU.UTF-8 expect 0 "$overcurrent" --language en a.kovc --report comma.html --save comma/a.kovc \
        --quit
    cmp a.html comma.html || fail "the report depends on the locale"
    cmp a.kovc comma/a.kovc || fail "the archive depends on the locale"
fi

echo "A report as PDF"
expect 0 "$overcurrent" --language en a.kovc --report a.pdf --quit
pages=$(pdfinfo a.pdf | sed -n 's/^Pages: *//p')
for words in "SIMULATED DEVICE" "a.kovc · Overcurrent $("$overcurrent" --version)" " of $pages"; do
    for page in $(seq "${pages:-1}"); do
        pdftotext -layout -f "$page" -l "$page" a.pdf page.txt
        holds page.txt "$words"
    done
done
mkdir none
cp a.pdf former.pdf
expect 3 env PATH="$work/none" "$overcurrent" --language en a.kovc --report former.pdf --save saved.kovc --quit
holds err "Install the package “weasyprint”"
cmp a.pdf former.pdf || fail "a report that was not made has replaced the former one"
cmp a.kovc saved.kovc || fail "a report that was not made has kept the archive from being written"
expect 3 "$overcurrent" --language en a.kovc --report missing/a.pdf --quit
holds err "missing/a.pdf"
! grep -q "a\.pdf\.[A-Z0-9]" err || fail "the name of a temporary file is shown: $(cat err)"

echo "Files that cannot be read or written"
expect 3 "$overcurrent" --language en missing.kovc --quit
holds err "Error accessing file."
head -c 900 a.kovc >short.kovc
expect 3 "$overcurrent" --language en short.kovc --run --speed 5000 --report short.html --quit
holds err "Try opening in data recovery mode?"
holds err "Answer: "
[ ! -e short.html ] || fail "a report without the archive that it was asked for"
expect 0 "$overcurrent" --language en a.kovc --results a.json --quit
python3 -c 'import json
data = json.load(open("a.json"))
assert data["verdict"] == "passed" and len(data["rows"]) == 8
assert all(row["from"] <= row["measured"] <= row["to"] and row["bandUnit"] == "s" for row in data["rows"])
for value in data["values"][0], data["values"][2]:
    assert value["from"] <= value["value"] <= value["to"]' ||
    fail "the results of the archive"
for option in save report screenshot; do
    expect 3 "$overcurrent" --language en --$option "$work/a.kovc/file" --quit
    holds err "a.kovc/file"
    expect 3 "$overcurrent" --language en --$option missing/file --quit
    holds err "missing/file"
    [ ! -e missing ] || fail "--$option has made a folder"
done
none() {
    [ -z "$(find "$state" -name "*.work" -o -name "*.former" 2>/dev/null)" ] || fail "copies of work are left over: $*"
}
state=${XDG_STATE_HOME:-$HOME/.local/state}
none "nothing has been measured"
expect 3 "$overcurrent" --language en --run --speed 5000 --save /dev/full --quit
[ "$(find "$state" -name "*.work" | wc -l)" -eq 1 ] || fail "what could not be saved is lost"
mkfifo pipe
for option in save report screenshot; do
    expect 3 "$overcurrent" --language en a.kovc --$option pipe --quit
    holds err "$work/pipe"
done
rm -rf "$state/kes"

echo "Arguments that cannot be understood"
expect 2 "$overcurrent" --language xx
for speed in 0 0.0009 100001 fast; do
    expect 2 "$overcurrent" --language en --speed $speed
    holds err "is not a number from 0.001 to 100000"
done
for speed in 0.001 100000; do
    expect 0 "$overcurrent" --speed $speed --version
done
most=$(seq -s, -f 10.0.0.%g 32)
expect 0 "$overcurrent" --devices "$most" --version
for devices in "$most,10.0.0.33" 10.0.0.1,10.0.0.1 10.0.0; do
    expect 2 "$overcurrent" --language en --devices "$devices" --version
    holds err "is not the address of a device, is given twice, or is one too many."
done
expect 2 "$overcurrent" --no-such-option
holds err "All options: --help"
LC_ALL=C expect 2 "$overcurrent" --language ru --no-such-option
[ "$(head -n 1 err)" = "«--no-such-option» не является параметром." ] || fail "two languages: $(cat err)"
expect 2 "$overcurrent" one two
expect 3 "$overcurrent" --language en --quit -- --language=ru
holds err "Error accessing file."
for option in --save --report --results --screenshot; do
    expect 2 "$overcurrent" --language en "$option=" --quit
    holds err "$option needs the name of a file."
    expect 2 "$overcurrent" --language en --quit $option
    holds err "$option needs a value."
    expect 2 "$overcurrent" --language en $option --quit
    holds err "$option needs the name of a file; “--quit” looks like an option."
    [ ! -e ./--quit ] || fail "an option became the name of a file"
done
expect 0 "$overcurrent" --language en a.kovc --results ./--quit.csv --quit
expect 2 "$overcurrent" --language en "" --quit
holds err "The name of the file to open is empty."
expect 0 "$overcurrent" --version
DISPLAY= WAYLAND_DISPLAY= expect 2 "$overcurrent" --language en --quit
holds err "needs a display"

echo "Signals"
timeout 60 "$overcurrent" --language en --run --speed 0.5 --save stopped.kovc --report stopped.html --quit 2>err &
child=$!
# The test is under way when the program has its threads; a second or two later it has begun to put out.
until grep -q "KesProgram_Star" /proc/"$(pgrep -P $child)"/task/*/comm 2>/dev/null; do
    kill -0 $child 2>/dev/null || break
done
pkill -TERM -P $child
wait $child
status=$?
[ $status -eq 4 ] || fail "status $status instead of 4 after SIGTERM ($(cat err))"
holds stopped.html "Test stopped before its end"
expect 0 "$overcurrent" stopped.kovc --quit

echo "The smallest program"
expect 2 "$template" --language en --run --results r.json --quit
holds err "writes no results"
for arguments in "x.abc" "x.abc --run --quit" "--save x.abc --run --quit"; do
    # shellcheck disable=SC2086
    expect 2 "$template" --language en $arguments
    holds err "This program keeps no archives."
done
expect 2 "$template" --language ru --save x.abc --quit
holds err "Эта программа не работает с архивами."
expect 0 "$overcurrent" --language en --help
cp out all
expect 0 "$template" --language en --help
for part in "[FILE]" --save --report --results; do
    holds all "$part"
    ! grep -qF -- "$part" out || fail "the smallest program offers $part: $(cat out)"
done
expect 0 "$template" --language en --screenshot template.png --quit
timeout 60 "$template" --language en --run --quit 2>err &
child=$!
until grep -q "KesProgram_Star" /proc/"$(pgrep -P $child)"/task/*/comm 2>/dev/null; do
    kill -0 $child 2>/dev/null || break
done
pkill -INT -P $child
wait $child
status=$?
[ $status -eq 4 ] || fail "status $status instead of 4 after SIGINT ($(cat err))"

echo "What belongs to a user is left alone"
rm -rf "$XDG_CACHE_HOME/kes"
expect 0 "$overcurrent" --language en a.kovc --quit
[ ! -e "$XDG_CACHE_HOME/kes/OvercurrentModel.cfg" ] || fail "a configuration without a user"
none "at the end"

conclude
