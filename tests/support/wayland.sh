#!/bin/sh
# Runs a command under a Wayland compositor of its own, with a session bus, without X, and with a home that is
# thrown away afterwards.
set -u
home=$(mktemp -d "${TMPDIR:-/tmp}/kes-home.XXXXXX") || exit 1
trap 'rm -rf "$home"' EXIT
export KES_HEADLESS=1 HOME="$home" XDG_CACHE_HOME="$home/.cache" XDG_CONFIG_HOME="$home/.config" \
    XDG_STATE_HOME="$home/.local/state" XDG_DATA_HOME="$home/.local/share" XDG_DOCUMENTS_DIR="$home/Documents" \
    XDG_RUNTIME_DIR="$home/run" GDK_BACKEND=wayland WLR_BACKENDS=headless WLR_RENDERER=pixman WLR_LIBINPUT_NO_DEVICES=1
unset DISPLAY WAYLAND_DISPLAY
mkdir -m 700 "$XDG_RUNTIME_DIR"
printf '%s\n' 'output HEADLESS-1 mode 1280x1024' 'xwayland disable' 'for_window [app_id=".*"] floating enable' \
    >"$home/sway.conf"
# The compositor refuses to run as root; whoever is root may still use its sockets.
if [ "$(id -u)" = 0 ]; then
    chmod 755 "$home"
    chown 65534:65534 "$XDG_RUNTIME_DIR"
    as_user="setpriv --reuid=65534 --regid=65534 --clear-groups"
fi
${as_user:-} sway -c "$home/sway.conf" >"$home/sway.log" 2>&1 &
export KES_COMPOSITOR=$!
tries=0
until SWAYSOCK=$(ls "$XDG_RUNTIME_DIR"/sway-ipc.* 2>/dev/null) &&
    socket=$(ls "$XDG_RUNTIME_DIR" | grep -x 'wayland-[0-9]*'); do
    tries=$((tries + 1))
    [ $tries -lt 100 ] || { cat "$home/sway.log" >&2; exit 1; }
    sleep 0.05
done
export SWAYSOCK WAYLAND_DISPLAY="$socket"
# What the session bus and its services say is of no interest; the command keeps its own output.
dbus-run-session -- sh -c '"$@" 2>&3 >&4 3>&- 4>&-' session "$@" 3>&2 4>&1 >/dev/null 2>&1
code=$?
kill $KES_COMPOSITOR 2>/dev/null
wait $KES_COMPOSITOR 2>/dev/null
exit $code
