#!/bin/bash
# Runs Overcurrent on a Wayland compositor that can be killed (tests/support/wayland.sh starts both).
# usage: wayland.sh FOLDER-OF-THE-PROGRAMS; with a home to fill.
set -u
. "$(dirname "$0")/../support/programs.sh"

echo "A picture of the window"
"$overcurrent" --language en --run --speed 5000 --screenshot a.png --quit 2>err || fail "status $? ($(cat err))"
# A window has light and dark places.
read -r colours darkest lightest <<<"$(identify -format '%k %[fx:minima] %[fx:maxima]' a.png)"
[ "${colours:-0}" -gt 50 ] && [ "$darkest" != "$lightest" ] || fail "$colours colours from $darkest to $lightest"

echo "The place of a window that another display has told"
configuration=$XDG_CACHE_HOME/kes/OvercurrentModel.cfg
mkdir -p "$(dirname "$configuration")"
echo '<root><Rectangle>70;90;1130;750</Rectangle></root>' >"$configuration"
timeout 60 "$overcurrent" --language en 2>err &
child=$!
until swaymsg -t get_tree | grep -q '"Overcurrent"' || ! kill -0 $child; do sleep 0.1; done
swaymsg '[title="Overcurrent"] resize set 1150 760' >/dev/null
sleep 1
kill -TERM $child
sleep 0.5
kill -TERM $child # Nothing is to be saved.
wait $child
grep -q '>70;90;1[0-9]*;7[0-9]*<' "$configuration" || fail "the place became $(grep -o '<Rect.*/Rect' "$configuration")"
grep -q '>70;90;1130;750<' "$configuration" && fail "the size was not read"

echo "A lost compositor"
timeout 60 "$overcurrent" --language en --run --speed 0.5 --save kept.kovc --report kept.html --quit 2>err &
child=$!
until grep -qs "KesProgram_Star" /proc/"$(pgrep -P $child)"/task/*/comm; do
    kill -0 $child || break
done
sleep 1
kill -KILL "$KES_COMPOSITOR"
wait $child
status=$?
[ $status -eq 4 ] || fail "status $status instead of 4 ($(cat err))"
[ -s kept.kovc ] || fail "no archive"
grep -q "Test stopped before its end" kept.html 2>/dev/null || fail "no report of a test that was stopped"

conclude
