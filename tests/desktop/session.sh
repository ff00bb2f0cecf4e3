#!/bin/bash
# A desktop for one command, seen by nobody: a screen, a session bus with the system's services,
# and folders of its own. All of it is gone when the command has ended, whatever it left running.
#   session.sh COMMAND [ARGUMENT...]
set -uo pipefail
folder=$(mktemp -d "${TMPDIR:-/tmp}/reelvane-desktop.XXXXXX")

finish() {
    local left signal=TERM deadline=$((SECONDS + 5))
    # Everything that was started in the session, services of the bus too, has its home folder.
    # (What grep exits with tells nothing: some processes end while it looks.)
    while left=$(grep -lszxF -- "HOME=$folder/home" /proc/[0-9]*/environ); [[ -n $left ]]; do
        if ((SECONDS >= deadline)); then signal=KILL; fi
        cut -d/ -f3 <<<"$left" | xargs kill -s "$signal" 2>/dev/null
        sleep 0.1
    done
    rm -rf -- "$folder"
}
trap finish EXIT
trap 'exit 1' HUP INT TERM

mkdir -p "$folder"/home/.{config,cache,local/share}
mkdir -m 700 "$folder/run"
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS XAUTHORITY XDG_CURRENT_DESKTOP QT_STYLE_OVERRIDE \
    QT_QPA_PLATFORM QT_SCALE_FACTOR LANGUAGE REELVANE_FFMPEG
export HOME=$folder/home XDG_RUNTIME_DIR=$folder/run XDG_CONFIG_HOME=$folder/home/.config \
    XDG_CACHE_HOME=$folder/home/.cache XDG_DATA_HOME=$folder/home/.local/share LC_ALL=C.UTF-8 \
    GDK_BACKEND=x11 QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

exec {screen}< <(exec Xvfb -displayfd 1 -screen 0 1280x900x24 -nolisten tcp -noreset \
    2>"$folder/Xvfb.log")
if ! read -rt 60 number <&"$screen"; then
    cat -- "$folder/Xvfb.log" >&2
    exit 1
fi
export DISPLAY=:$number
dbus-run-session -- "$@" &
wait $!  # a signal gets through to it
