#!/bin/bash
# Runs VoltageFrequency as a user without a screen would, within the process and over the network.
# usage: unattended.sh FOLDER-OF-THE-PROGRAMS; on an X server, with a home to fill.
set -u
. "$(dirname "$0")/../support/programs.sh"
program=$1/kes-voltage-frequency
simulator=$1/kesto-sim
device=127.12.0.1
simulating=
trap '[ -n "$simulating" ] && kill $simulating 2>/dev/null; rm -rf "$work"' EXIT

# expect STATUS ARGUMENT...: standard error goes to the file err.
expect() {
    local expected=$1 status
    shift
    timeout 120 "$program" "$@" >out 2>err
    status=$?
    [ $status -eq "$expected" ] || fail "status $status instead of $expected: $* ($(cat err))"
}

holds() {
    grep -qF -- "$2" "$1" || fail "\"$2\" is not in $1: $(head -c 400 "$1")"
}

# with_relay SETTINGS STATUS: a test of a relay in another process.
with_relay() {
    rm -f sim.out # what the former one has said counts no more
    "$simulator" --listen $device --speed 1000 --wire "$1" >sim.out 2>sim.err &
    simulating=$!
    until grep -qs $device sim.out; do
        kill -0 $simulating 2>/dev/null || { fail "kesto-sim: $(cat sim.err)"; return; }
        sleep 0.05
    done
    expect "$2" --language en --devices $device --run --report net.html --quit
    kill $simulating
    wait $simulating
    simulating=
}

echo "A run that passes, its files, and their second reading"
expect 0 --language en --run --speed 5000 --save a.kvf --report a.html --screenshot a.png --quit
[ "$(head -c 8 a.png | od -An -tx1 | tr -d ' ')" = 89504e470d0a1a0a ] || fail "the screenshot is no PNG"
holds a.html "SIMULATED DEVICE"
mkdir again # a report tells the name of its archive
mkdir tmp
TMPDIR=$work/tmp expect 0 --language en a.kvf --report again.html --save again/a.kvf --quit
[ -z "$(ls tmp)" ] || fail "left behind: $(ls tmp)"
cmp a.html again.html || fail "the report of the archive differs from that of the run"
cmp a.kvf again/a.kvf || fail "the archive differs after opening and saving"
expect 0 --language ru a.kvf --report ru.html --quit
holds ru.html "ИМИТИРУЕМОЕ УСТРОЙСТВО"

echo "Results for other programs, of the run and of its archive"
for kind in csv json xml; do
    expect 0 --language ru a.kvf --results of-archive.$kind --quit
done
expect 0 --language en --run --speed 5000 --results run.json --quit
python3 - <<'END' || fail "the results are not what they should be"
import csv, json, xml.etree.ElementTree as xml
data, archive = json.load(open("run.json", encoding="utf-8")), json.load(open("of-archive.json", encoding="utf-8"))
assert data["verdict"] == archive["verdict"] == "passed" and data["origin"] == "simulated" and not data["changedByHand"]
assert len(data["checksum"]) == 64 and data["firmwareVersion"] and data["serialNumber"]
numbers = [[row[name] for name in ("id", "expected", "measured", "deviation", "from", "to", "mark")] for row in data["rows"]]
assert len(numbers) == 15 and all(row["from"] <= row["measured"] <= row["to"] for row in data["rows"])
assert numbers == [[row[name] for name in ("id", "expected", "measured", "deviation", "from", "to", "mark")]
                   for row in archive["rows"]], "language or reading makes a difference"
table = list(csv.DictReader(open("of-archive.csv", encoding="utf-8", newline="")))
assert [float(row["measured"]) for row in table] == [row["measured"] for row in archive["rows"]]
suite = xml.parse("of-archive.xml").getroot().find("testsuite")
assert (suite.get("tests"), suite.get("failures"), suite.get("errors"), suite.get("skipped")) == ("16", "0", "0", "0")
END
expect 2 --language en --run --speed 5000 --results r.txt --save none.kvf --quit
holds err "must end in .csv, .json or .xml"
[ ! -e none.kvf ] || fail "a test whose results cannot be written was started"
ln -s /dev/full full.csv
expect 3 --language en a.kvf --results full.csv --quit

echo "Files that cannot be read"
expect 3 --language en missing.kvf --quit
head -c 900 a.kvf >short.kvf
expect 3 --language en short.kvf --run --speed 5000 --report short.html --quit
[ ! -e short.html ] || fail "a report without the archive that it was asked for"

echo "A relay over the network, one that is set otherwise, and another program's"
with_relay voltage-frequency 0
holds net.html "Test passed"
with_relay "voltage-frequency:U<=70" 1
holds net.html "Test failed"
with_relay overcurrent 1
holds net.html "No operation"

echo "SIGTERM"
timeout 60 "$program" --language en --run --speed 0.5 --save stopped.kvf --report stopped.html --quit 2>err &
child=$!
until grep -q "KesProgram_Star" /proc/"$(pgrep -P $child)"/task/*/comm 2>/dev/null; do
    kill -0 $child 2>/dev/null || break
done
pkill -TERM -P $child
wait $child
status=$?
[ $status -eq 4 ] || fail "status $status instead of 4 after SIGTERM ($(cat err))"
holds stopped.html "Test stopped before its end"

conclude
