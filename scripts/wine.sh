#!/usr/bin/env bash
# wine.sh PROGRAM [ARGUMENT...]: runs a Windows program, or any command that starts some of them (ctest, a shell), with
# everything they need and without a person: a Wine prefix of the project's own, a display of its own, no dialogs. Ends
# what it started, whatever happens. Inside such a session it only runs the program.
set -euo pipefail

readonly wine=/usr/lib/wine/wine64
readonly wineserver=/usr/lib/wine/wineserver64
root=$(cd -- "$(dirname -- "$(readlink -f -- "$0")")/.." && pwd)
readonly root

run() {
    case $1 in
    *.exe) exec "$wine" "$@" ;;
    *) exec "$@" ;;
    esac
}

[[ -z ${QUORVEX_WINE_SESSION-} ]] || run "$@"

export QUORVEX_WINE_SESSION=$$
export WINEPREFIX=${QUORVEX_WINE_PREFIX:-$root/build/wine}
export WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
export LIBGL_ALWAYS_SOFTWARE=1 LC_ALL=C.UTF-8
unset DISPLAY WAYLAND_DISPLAY

child_pid='' display_pid=''
finish() {
    [[ -z $child_pid ]] || kill "$child_pid" 2>/dev/null || true
    "$wineserver" -k 2>/dev/null || true
    [[ -z $display_pid ]] || kill "$display_pid" 2>/dev/null || true
}

# The server picks a free number and tells it.
start_display() {
    local answer number=''
    exec {answer}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp 2>/dev/null </dev/null)
    display_pid=$!
    read -r -t 30 -u "$answer" number || true
    if [[ -z $number ]]; then
        printf 'wine.sh: Xvfb does not start\n' >&2
        exit 1
    fi
    export DISPLAY=:$number
}

set_key() { "$wine" reg add "$1" /v "$2" /t "$3" /d "$4" /f; }

# Without window management, as there is no window manager and each window would wait for one; without the dialog of a
# crash, which would wait for a person; with a font in the place of one that every program asks for.
make_prefix() {
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX"
    "$wine" wineboot -i
    set_key 'HKCU\Software\Wine\X11 Driver' Managed REG_SZ N
    set_key 'HKCU\Software\Wine\WineDbg' ShowCrashDialog REG_DWORD 0
    set_key 'HKCU\Software\Wine\Fonts\Replacements' Arial REG_SZ 'Liberation Sans'
    "$wineserver" -w
    touch "$WINEPREFIX/complete"
} </dev/null >/dev/null 2>&1

trap finish EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# One session at a time has the prefix; the lock goes with the process.
mkdir -p "$(dirname -- "$WINEPREFIX")"
exec {lock}>"$WINEPREFIX.lock"
flock "$lock"

start_display
[[ -e $WINEPREFIX/complete ]] || make_prefix

# Wine's services start with the first program and stay until the last one ends. They hold the descriptors of the program
# that started them, so that whoever waits for its output would wait for them: this one starts them, and stays until its
# input ends, which is when this script ends, one way or another.
rm -f "$WINEPREFIX/started"
exec {keeper}> >(exec "$wine" cmd >/dev/null 2>&1 {lock}>&-)
printf 'echo started>"Z:%s"\r\n' "$WINEPREFIX/started" >&"$keeper"
for ((waited = 0; waited < 600; ++waited)); do
    [[ ! -e $WINEPREFIX/started ]] || break
    sleep 0.05
done

status=0
run "$@" {lock}>&- {keeper}>&- </dev/null &
child_pid=$!
wait "$child_pid" || status=$?
child_pid=''
exit "$status"
