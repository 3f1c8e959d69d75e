#!/usr/bin/env bash
# User instructions per output line of a status-bar command, counted by callgrind: the
# command runs once for a short and once for a long time, and the difference in instructions
# is divided by the difference in lines, so start-up costs cancel out.
#   scripts/measure-watch.sh SHORT_SECONDS LONG_SECONDS -- COMMAND [ARGS…]
# e.g. scripts/measure-watch.sh 20 140 -- build/lumetra --watch
#      scripts/measure-watch.sh 20 140 -- i3status -c bench/i3status.conf
# lumetra's line follows the settings file; for numbers that compare, enable all five metrics:
#   mkdir -p /tmp/m/lumetra && echo '{"enabledMetrics": ["cpu", "memory", "temperature",
#   "download", "upload"]}' > /tmp/m/lumetra/settings.json
#   XDG_CONFIG_HOME=/tmp/m scripts/measure-watch.sh 20 140 -- build/lumetra --watch
set -euo pipefail
short=${1:?short seconds}; long=${2:?long seconds}; shift 2
[ "${1:-}" = "--" ] && shift
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

run() {
    local seconds=$1 name=$2; shift 2
    timeout -s INT "$seconds" valgrind --tool=callgrind --trace-children=no \
        --callgrind-out-file="$tmp/$name.out" "$@" >"$tmp/$name.lines" 2>"$tmp/$name.log" || true
    local instructions lines
    instructions=$(grep -E '^(summary|totals):' "$tmp/$name.out" | head -n1 | awk '{print $2}')
    lines=$(wc -l <"$tmp/$name.lines")
    echo "$instructions $lines"
}

read -r shortInstructions shortLines < <(run "$short" short "$@")
read -r longInstructions longLines < <(run "$long" long "$@")
echo "short run: $shortLines lines, $shortInstructions instructions"
echo "long run:  $longLines lines, $longInstructions instructions"
echo "per line:  $(( (longInstructions - shortInstructions) / (longLines - shortLines) )) instructions"
