#!/bin/bash
# Runs a program on an X server of its own that shows nothing: with_xvfb.sh PROGRAM [ARGUMENT...]
# The server goes when the program ends; the exit status is the program's, or 125 when there is no server to be had.

set -u

if ! command -v Xvfb > /dev/null; then
    echo "with_xvfb.sh: Xvfb is missing; install the package xvfb" >&2
    exit 125
fi

# The kernel gives the pipe away with the first line that the server writes into it: the number of its display.
log=$(mktemp)
exec {number}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp -noreset -dpi 96 \
    +extension RENDER +extension Composite +extension GLX 2> "$log")
server=$!
trap 'kill "$server" 2> /dev/null; rm -f "$log"' EXIT
trap 'exit 143' TERM INT HUP

if ! read -r -t 30 display <&"$number"; then
    echo "with_xvfb.sh: Xvfb did not start:" >&2
    cat "$log" >&2
    exit 125
fi

export DISPLAY=":$display"
unset XAUTHORITY WAYLAND_DISPLAY
"$@" {number}<&- &
program=$!
wait "$program"
