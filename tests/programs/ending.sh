#!/bin/bash
# Ends programs from outside, in every way in which a system does, and looks what is left.
# usage: ending.sh FOLDER-OF-THE-PROGRAMS; on an X server with a session bus, with a home to fill.
set -u
tests=$(cd "$(dirname "$0")" && pwd)
. "$tests/../support/programs.sh"

# begin ARGUMENT...: the program in the background, with its window on the screen and, with --run, its test
# under way.
begin() {
    rm -f kept.kovc kept.html
    "$overcurrent" --language en "$@" >out 2>err &
    child=$!
    until xdotool search --onlyvisible --name '^Overcurrent$' >/dev/null 2>&1 || ! kill -0 $child; do
        sleep 0.1
    done
    case " $* " in
    *" --run --speed 5000 "*) # It is over when its results are in a copy.
        until [ "$(copies)" -gt 0 ] || ! kill -0 $child; do sleep 0.1; done
        sleep 1 ;;
    *" --run "*) # It begins to put out a little after its thread has begun.
        until grep -qs KesProgram_Star /proc/$child/task/*/comm || ! kill -0 $child; do sleep 0.1; done
        sleep 1 ;;
    esac
}

copies() { find "${XDG_STATE_HOME:-$HOME/.local/state}" -name "*.work" 2>/dev/null | wc -l; }

# ended STATUS SECONDS: the program ends by itself with the status, no later than that.
ended() {
    local begun=$SECONDS status
    timeout 30 tail --pid=$child -f /dev/null || kill -KILL $child
    wait $child
    status=$?
    [ $status -eq "$1" ] || fail "status $status instead of $1 ($(cat err))"
    [ $((SECONDS - begun)) -le "$2" ] || fail "it has taken $((SECONDS - begun)) s instead of $2"
}

unattended() { begin --run --speed 0.5 --save kept.kovc --report kept.html --quit; }

keptFiles() {
    [ -s kept.kovc ] || fail "no archive"
    grep -q "Test stopped before its end" kept.html 2>/dev/null || fail "no report of a test that was stopped"
}

for signal in HUP TERM INT; do
    echo "SIG$signal in an unattended run"
    unattended
    kill -$signal $child
    ended 4 5
    keptFiles
done

echo "Two signals in an unattended run"
unattended
kill -TERM $child
kill -HUP $child
ended 4 5
# What it had no time to save.
rm -rf "${XDG_STATE_HOME:-$HOME/.local/state}/kes"

echo "Results of a user that are asked about in vain"
begin --run --speed 5000
kill -TERM $child
sleep 0.5
[ "$(copies)" -eq 1 ] || fail "$(copies) copies of the work"
kill -TERM $child
ended 0 3
[ "$(copies)" -eq 1 ] || fail "$(copies) copies of the work are left"
rm -rf "${XDG_STATE_HOME:-$HOME/.local/state}/kes"

echo "A lost display in an unattended run"
Xvfb -displayfd 3 3>display >/dev/null 2>&1 &
server=$!
until [ -s display ] || ! kill -0 $server; do sleep 0.1; done
(export DISPLAY=:$(cat display); unset KES_HEADLESS
unattended
kill -KILL $server
ended 4 5
keptFiles
exit $failures) || fail "without its display"
wait $server 2>/dev/null

echo "SIGTERM that nobody answers, and one that comes twice"
begin
kill -TERM $child
sleep 0.5
kill -0 $child || fail "it has not asked"
kill -TERM $child
ended 0 3
begin
kill -HUP $child
ended 0 12

echo "SIGTERM whose question is answered: choosing a file may take its time"
begin
kill -TERM $child
until xdotool search --onlyvisible --name '^File manager$' >/dev/null 2>&1 || ! kill -0 $child; do sleep 0.1; done
sleep 0.5
xdotool key --clearmodifiers alt+y
sleep 12
kill -0 $child || fail "it has ended under the user's hands"
kill -TERM $child
ended 0 3

echo "SIGTERM that the user cancels: the next one asks as well"
begin
for time in first second; do
    kill -TERM $child
    until xdotool search --onlyvisible --name '^File manager$' >/dev/null 2>&1 || ! kill -0 $child; do sleep 0.1; done
    sleep 0.5
    xdotool key --clearmodifiers Escape
    sleep 0.5
    kill -0 $child || fail "the $time has closed what the user keeps open"
done
kill -TERM $child
sleep 0.5
kill -TERM $child
ended 0 3

echo "The end of the session"
/usr/bin/python3 "$tests/session.py" >session &
manager=$!
until grep -q ready session; do kill -0 $manager || break; sleep 0.1; done
begin
wait $manager || fail "the session manager: $(cat session)"
kill -0 $child || fail "it has not asked"
kill -TERM $child
ended 0 3

conclude
