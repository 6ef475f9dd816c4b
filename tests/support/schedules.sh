#!/bin/sh
# Runs the random schedules of a test program in several processes at once, since they mostly wait.
# usage: schedules.sh PROGRAM
parts=6
status=0
pids=""
for part in $(seq $parts); do
    KES_SCHEDULE_PART=$part/$parts "$1" --gtest_filter='*Schedules.*' &
    pids="$pids $!"
done
for pid in $pids; do
    wait "$pid" || status=1
done
exit $status
