#!/bin/bash
# A program tests a relay at a device in another process, over the network; and what happens to one of the two
# processes leaves the outputs off.
# usage: network.sh FOLDER-OF-THE-PROGRAMS; on an X server, with a home to fill.
set -u
. "$(dirname "$0")/../support/programs.sh"
simulator=$1/kesto-sim
device=127.11.0.1
trap 'kill $simulating 2>/dev/null; rm -rf "$work"' EXIT

# begin_simulator SPEED
begin_simulator() {
    rm -f sim.out # what the former one has said counts no more
    "$simulator" --listen $device --speed "$1" --wire overcurrent >sim.out 2>sim.err &
    simulating=$!
    until grep -qs $device sim.out; do
        kill -0 $simulating 2>/dev/null || { fail "kesto-sim: $(cat sim.err)"; break; }
        sleep 0.05
    done
}

end_simulator() {
    kill $simulating
    wait $simulating || fail "kesto-sim ended with $?"
}

# ask QUERY: one line to the device, one line back.
ask() {
    exec 3<>/dev/tcp/$device/5025
    echo "$1" >&3
    timeout 5 head -n 1 <&3
    exec 3>&-
}

begin() {
    timeout 120 "$overcurrent" --language en --devices $device "$@" >out 2>err &
    child=$!
}

# Until the device puts something out.
wait_for_outputs() {
    for _ in $(seq 200); do
        case $(ask ':SIM:OUTP?' | cut -d, -f1) in
            0 | "") ;;
            *) return ;;
        esac
        sleep 0.05
    done
    fail "nothing is put out: $(cat err)"
}

# No current within the seconds.
expect_off() {
    local end=$((SECONDS + $1))
    until [ "$(ask ':SIM:OUTP?')" = "$off" ]; do
        [ $SECONDS -lt $end ] || { fail "still on after $1 s: $(ask ':SIM:OUTP?')"; return; }
        sleep 0.05
    done
}

echo "A whole run over the network"
begin_simulator 1000
off=$(ask ':SIM:OUTP?')
begin --run --save net.kovc --report net.html --quit
wait $child
status=$?
[ $status -eq 0 ] || fail "status $status instead of 0 ($(cat err))"
grep -q "SIMULATED DEVICE" net.html || fail "the report does not say that the device is simulated"
[ "$(ask ':SYST:CONT:OWN?')" = '"",""' ] || fail "the program has not given the device back"
end_simulator

echo "A program that is killed"
begin_simulator 1
begin --run
wait_for_outputs
pkill -KILL -P $child
expect_off 2
wait $child 2>/dev/null
end_simulator

echo "A program that stands still for five seconds"
begin_simulator 1
begin --run --report still.html --quit
wait_for_outputs
pkill -STOP -P $child
expect_off 2
sleep 4
pkill -CONT -P $child
wait $child
status=$?
[ $status -ge 3 ] && [ $status -le 4 ] || fail "status $status instead of 3 or 4 ($(cat err))"
end_simulator

echo "A device that is killed"
begin_simulator 1
begin --run --report dead.html --quit
wait_for_outputs
kill -KILL $simulating
wait $simulating 2>/dev/null
wait $child
status=$?
[ $status -eq 3 ] || fail "status $status instead of 3 ($(cat err))"
grep -q "KESTO-3 No. 00001" err || fail "the message does not name the device: $(cat err)"

echo "A device that stands still, and goes on"
begin_simulator 1
begin --run --report stopped.html --quit
wait_for_outputs
kill -STOP $simulating
wait $child
status=$?
[ $status -eq 3 ] || fail "status $status instead of 3 ($(cat err))"
grep -q "KESTO-3 No. 00001" err || fail "the message does not name the device: $(cat err)"
kill -CONT $simulating
expect_off 2
ask ':SIM:SPE 1000;SPE?' >speed
begin --run --report next.html --quit
wait $child
status=$?
[ $status -eq 0 ] || fail "the next run ends with $status ($(cat err))"
end_simulator

echo "No device at all"
begin --run --quit
wait $child
status=$?
[ $status -eq 2 ] || fail "status $status instead of 2 ($(cat err))"
grep -q $device err || fail "the message does not name the address: $(cat err)"

conclude
