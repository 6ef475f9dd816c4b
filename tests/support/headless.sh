#!/bin/sh
# Runs a command on an X server of its own, with a window manager and a session bus, and a home that
# is thrown away afterwards. Inside another headless.sh it only runs the command.
set -u
if [ -n "${KES_HEADLESS:-}" ]; then
    exec "$@"
fi
home=$(mktemp -d "${TMPDIR:-/tmp}/kes-home.XXXXXX") || exit 1
trap 'rm -rf "$home"' EXIT
export KES_HEADLESS=1 HOME="$home" XDG_CACHE_HOME="$home/.cache" XDG_CONFIG_HOME="$home/.config" \
    XDG_STATE_HOME="$home/.local/state" XDG_DATA_HOME="$home/.local/share" XDG_DOCUMENTS_DIR="$home/Documents" GDK_BACKEND=x11
# What the session bus and its services say is of no interest; the command keeps its own output.
xvfb-run -a -s "-screen 0 ${KES_SCREEN:-1280x1024x24} -noreset" sh -c '
    exec dbus-run-session -- "$@" 3>&2 4>&1 >/dev/null 2>&1' session sh -c '
    openbox >/dev/null 2>&1 &
    manager=$!
    tries=0
    until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q "window id" || [ $tries -ge 100 ]; do
        tries=$((tries + 1)); sleep 0.05
    done
    "$@" >&4 2>&3 3>&- 4>&-
    code=$?
    kill $manager 2>/dev/null
    exit $code' headless "$@"
