#!/bin/sh
# Runs a command against a private, headless X server (Debian's Xvfb with Mesa's software
# OpenGL), so OpenGL tests need no display and parallel tests never share one. Xvfb picks a
# free display number itself and writes it to a pipe once it accepts connections (-displayfd),
# which leaves no race between concurrent runs.
set -eu
dir=$(mktemp -d)
server=
cleanup() {
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    rm -rf "$dir"
}
trap cleanup EXIT
mkfifo "$dir/display"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$dir/display" 2>"$dir/log" &
server=$!
# Blocks until Xvfb has written the number, or ends empty when it exits without one.
number=$(head -n 1 "$dir/display" || true)
if [ -z "$number" ]; then
    echo "Xvfb did not start:" >&2
    cat "$dir/log" >&2
    exit 1
fi
DISPLAY=:$number
QT_QPA_PLATFORM=xcb
XDG_RUNTIME_DIR=$dir
# On Qt's xcb platform libxkbcommon-x11 hands strndup strings that are not NUL-terminated,
# which AddressSanitizer's strict string checks take for overflows: leave those checks out
# (builds without the sanitizer ignore the setting).
ASAN_OPTIONS="${ASAN_OPTIONS:-}:strict_string_checks=0"
export DISPLAY QT_QPA_PLATFORM XDG_RUNTIME_DIR ASAN_OPTIONS
status=0
"$@" || status=$?
exit $status
