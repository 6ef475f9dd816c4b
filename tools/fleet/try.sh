#!/bin/bash
# Tries the scripts of this folder on a Slurm of one node, with simulated devices, and leaves nothing running.
# usage: try.sh FOLDER-OF-THE-PROGRAMS [FOLDER-TO-KEEP]; as root, with slurm-wlm, munge and xvfb installed.
set -u
programs=$(realpath "$1") || exit 1
here=$(dirname "$(realpath "$0")")
kept=${2:-}
dir=${kept:-$(mktemp -d)}
mkdir -p "$dir"/{state,spool,kesto,healthy,faulty,away,lost,cancelled} && cd "$dir" || exit 1
export PATH=$programs:$PATH HOME=$dir XDG_CACHE_HOME=$dir/cache XDG_STATE_HOME=$dir/state-of-user SLURM_CONF=$dir/slurm.conf KESTO_DEVICES=$dir/kesto
simulators=()
failures=0

fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

stop() {
    for daemon in slurmd slurmctld munged; do
        [ -e "$daemon.pid" ] && kill "$(cat "$daemon.pid")"
        await "an end of $daemon" "[ ! -e $daemon.pid ]"
    done
    endSimulation
    [ -n "$kept" ] || rm -rf "$dir"
}
trap stop EXIT
chmod 755 "$dir" # munged lets everybody in and so has to be reached by everybody

# simulate ADDRESS NUMBER RELAY [SPEED]: that many devices from this address on, each with such a relay.
simulate() {
    kesto-sim --listen "$1" --devices "$2" --serial "${1##*.}" --speed "${4:-50}" --wire "$3" >>sim.log 2>&1 &
    simulators+=($!)
    until grep -qs "$1" sim.log; do
        kill -0 $! || exit 1
        sleep 0.1
    done
}

endSimulation() {
    [ ${#simulators[@]} -eq 0 ] || { kill "${simulators[@]}"; wait "${simulators[@]}"; }
    simulators=()
    : >sim.log
}

# submit NAME: one test in a folder of that name; prints the job's number.
submit() {
    cp settings.kovc "$1/relay-1.kovc"
    (cd "$1" && sbatch --parsable --array=1 "$here/overcurrent.sbatch")
}

# await WHAT CONDITION: for half a minute at most.
await() {
    for _ in $(seq 150); do
        eval "$2" && return
        sleep 0.2
    done
    fail "there is not $1"
}

# run NAME: the array of eight tests in a folder of that name.
run() {
    seq 8 | xargs -I{} cp settings.kovc "$1/relay-{}.kovc"
    (cd "$1" && sbatch --wait --array=1-8 "$here/overcurrent.sbatch")
    # Of each task the line when it began and that when it ended.
    sort -n "$1"/task-*.log | awk '$2 == "begin" { if (busy[$3]++) { print "two tests at device " $3; bad = 1 } n++
                                                   if (++now > most) most = now }
                                   $2 == "end" { busy[$3]--; now-- }
                                   END { print n " tests, up to " most " at the same time"; exit bad || n != 8 || most < 2 }' ||
        fail "the devices were not shared out"
    python3 "$here/collect.py" "$1"/result-*.json || fail "the results could not be collected"
}

# count NAME STATE STATUS: how many tasks of the last array ended so.
count() {
    grep -c "ArrayJobId=$(tail -n 1 jobs.txt | sed 's/.*ArrayJobId=\([0-9]*\).*/\1/') .* ExitCode=$2:0" <(grep "JobState=$1 " jobs.txt)
}

echo "Starting munged, slurmctld and slurmd"
seq 0 3 | while read -r n; do echo "127.13.0.$((n + 1))" >"kesto/$n"; done
for file in slurm gres; do
    sed "s|@DIR@|$dir|; s|@HOST@|$(hostname -s)|; s|@USER@|$(id -un)|" "$here/$file.conf.in" >$file.conf
done
(umask 077 && head -c 128 /dev/urandom >munge.key)
munged --key-file="$dir/munge.key" --socket="$dir/munge.socket" --pid-file="$dir/munged.pid" \
    --log-file="$dir/munged.log" --seed-file="$dir/munged.seed" || exit 1
slurmctld && slurmd || exit 1
await "an idle node" 'sinfo --noheader --states=idle | grep -q .'
xvfb-run -a kes-overcurrent --save settings.kovc --quit 2>program.log

echo "Eight tests of good relays on four devices"
simulate 127.13.0.1 4 overcurrent
run healthy
[ "$(count COMPLETED 0)" -eq 8 ] || fail "not every healthy relay has passed"

echo "One of the relays is too slow"
endSimulation
simulate 127.13.0.1 3 overcurrent
simulate 127.13.0.4 1 overcurrent:tms=1.5
run faulty
atFault=$(grep -l "begin 3 " faulty/task-*.log | wc -l)
echo "$atFault tests of the slow relay, $(count FAILED 1) jobs failed, $(count COMPLETED 0) completed"
[ "$atFault" -gt 0 ] && [ "$(count FAILED 1)" -eq "$atFault" ] && [ "$(count COMPLETED 0)" -eq $((8 - atFault)) ] ||
    fail "the failed jobs are not those of the faulty relay"

echo "A device that is not there, until somebody has switched it on"
endSimulation
job=$(submit away)
await "a held job" '[ "$(squeue --noheader --format=%t)" = SE ]'
[ "$(count FAILED 2)" -eq 1 ] || fail "status 2 was not noted"
simulate 127.13.0.1 4 overcurrent
scontrol release "$job" && scontrol update JobId="$job" StartTime=now
await "the test of the device that has come" '[ -e away/result-1.json ] && [ "$(count COMPLETED 0)" -eq 1 ]'

echo "A test without its archive"
(cd lost && sbatch --array=1 "$here/overcurrent.sbatch")
await "a failed job" '[ "$(count FAILED 3)" -eq 1 ]'

echo "A test that is cancelled"
endSimulation
simulate 127.13.0.1 4 overcurrent 1
job=$(submit cancelled)
await "the beginning" 'grep -qs begin cancelled/task-1.log'
sleep 3
scancel "$job"
await "a cancelled job" '[ "$(count CANCELLED 0)" -eq 1 ] && [ -e cancelled/result-1.pdf ]'
python3 "$here/collect.py" cancelled/result-1.json | grep '"stopped"' || fail "no results of a stopped test"

[ $failures -eq 0 ] && echo "All is well"
exit $((failures > 0))
