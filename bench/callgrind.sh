#!/usr/bin/env bash
# Instructions per gizmo-frame, counted by valgrind's callgrind: a figure that does not depend
# on the machine's load. For each case, mxFrameCost builds a scene with one gizmo, runs ten
# frames, and then the measured frames; callgrind collects only inside those.
#
#   bench/callgrind.sh [frames]      (default 200; needs the release build: ./run bench)
#
# Prints one line per case with the goal, and exits 1 when a case is over its goal.
set -euo pipefail
cd "$(dirname "$0")/.."

frames=${1:-200}
program=build/release/bench/mxFrameCost
if [ ! -x "$program" ]; then
    echo "callgrind.sh: $program is missing; build the release preset first (./run bench)" >&2
    exit 2
fi
if ! command -v valgrind >/dev/null; then
    echo "callgrind.sh: valgrind is missing (Debian package valgrind)" >&2
    exit 2
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# instructions KIND MODE REFERENCE: the instructions per frame of one gizmo.
instructions() {
    local out="$work/callgrind.out"
    valgrind --tool=callgrind --callgrind-out-file="$out" --collect-atstart=no \
        --toggle-collect='mx::bench::measuredFrames*' \
        "$program" "$1" "$2" "$3" "$frames" >/dev/null 2>"$work/valgrind.log" || {
        cat "$work/valgrind.log" >&2
        exit 1
    }
    local total
    total=$(sed -n 's/^totals: *\([0-9]*\).*/\1/p' "$out")
    echo $(( (total + frames / 2) / frames ))
}

status=0
printf '%-6s %-10s %-6s %14s %8s\n' frame mode orient "instr/frame" goal
report() {
    local kind=$1 mode=$2 reference=$3 goal=$4
    local count
    count=$(instructions "$kind" "$mode" "$reference")
    local verdict=ok
    if [ "$count" -gt "$goal" ]; then
        verdict=OVER
        status=1
    fi
    printf '%-6s %-10s %-6s %14s %8s %s\n' "$kind" "$mode" "$reference" "$count" "$goal" "$verdict"
}

for mode in translate rotate scale; do
    for reference in World Local View; do
        report idle "$mode" "$reference" 1500
    done
done
report hover translate World 3000
report hover rotate World 15000
report hover scale World 3000
exit $status
