#!/usr/bin/env bash
# D-Bus traffic of the panel item at the 1 s interval with the popover closed: every message
# lumetra's bus connection sends or receives, captured with dbus-monitor on a private session
# bus (and a virtual X server when there is no display), reported as bytes per tick.
#   scripts/measure-dbus-traffic.sh [--steady] [--xfce] [SECONDS] [LUMETRA]
# SECONDS defaults to 60, LUMETRA to build/lumetra.
#   --steady  a label that cannot change ("lumetra", drawn as the wide image): nothing
#             should be sent at all
#   --xfce    with xfce4-panel as the watcher and host, so its reads of the item count too
set -euo pipefail
steady=0 xfce=0
while [ $# -gt 0 ]; do
    case $1 in
    --steady) steady=1; shift ;;
    --xfce) xfce=1; shift ;;
    *) break ;;
    esac
done
seconds=${1:-60}
lumetra=$(realpath "${2:-build/lumetra}")
here=$(realpath "$0")

# A private bus and display of our own.
if [ -z "${LUMETRA_MEASURE_INNER:-}" ]; then
    export LUMETRA_MEASURE_INNER=1
    args=()
    [ $steady = 1 ] && args+=(--steady)
    [ $xfce = 1 ] && args+=(--xfce)
    exec xvfb-run -a -s "-screen 0 1024x300x24" dbus-run-session -- \
        bash "$here" "${args[@]}" "$seconds" "$lumetra"
fi

root=$(dirname "$(dirname "$here")")
# shellcheck source=/dev/null
. "$root/tests/e2e/lib.sh"
e2e_home
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    rm -rf "$work"
}
trap cleanup EXIT
if [ $steady = 1 ]; then
    export LUMETRA_PANEL_ICON=wide
    e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1, "enabledMetrics": []'
fi

if [ $xfce = 1 ]; then
    xfce_panel_config
    xfce_panel_start || echo "xfce4-panel's watcher did not appear; measuring without it" >&2
    pids+=($panel)
fi

"$lumetra" >"$work/lumetra.log" 2>&1 &
app=$!
pids+=($app)
item_owner() {
    owner=$(gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.GetNameOwner "org.kde.StatusNotifierItem-$app-1" 2>/dev/null |
        sed -n "s/.*'\(.*\)'.*/\1/p")
    [ -n "$owner" ]
}
wait_until 10 item_owner || { echo "lumetra's item did not appear on the bus"; cat "$work/lumetra.log"; exit 1; }
# Past start-up: the first samples, the registration and the host's first reads.
sleep 5

dbus-monitor --session --binary "sender='$owner'" "destination='$owner'" >"$work/traffic.bin" &
binary=$!
dbus-monitor --session --profile "sender='$owner'" "destination='$owner'" >"$work/traffic.txt" &
profile=$!
pids+=($binary $profile)
sleep "$seconds"
kill $binary $profile
wait $binary $profile 2>/dev/null || true

# The monitors also see the bus greeting them (NameAcquired, NameLost): count only messages
# from or to lumetra's connection, read from the raw stream.
read -r messages bytes < <(python3 - "$work/traffic.bin" "$owner" <<'PY'
import struct, sys
data, owner = open(sys.argv[1], "rb").read(), sys.argv[2]
pos = count = total = 0
while pos + 16 <= len(data):
    endian = "<" if data[pos:pos + 1] == b"l" else ">"
    body, _, fields = struct.unpack(endian + "III", data[pos + 4:pos + 16])
    size = 16 + fields + (-fields % 8) + body
    m = data[pos:pos + size]  # alignment counts from the message's start
    i, end, names = 16, 16 + fields, {}
    while i < end:  # header fields: (code, variant); 6 destination, 7 sender
        code, siglen = m[i], m[i + 1]
        sig = m[i + 2:i + 2 + siglen]
        i += 3 + siglen
        if sig in (b"s", b"o"):
            i += -i % 4
            n = struct.unpack(endian + "I", m[i:i + 4])[0]
            names[code] = m[i + 4:i + 4 + n].decode()
            i += 5 + n
        elif sig == b"g":
            i += 2 + m[i]
        elif sig == b"u":
            i += -i % 4 + 4
        i += -i % 8
    if owner in (names.get(6), names.get(7)):
        count, total = count + 1, total + size
    pos += size
print(count, total)
PY
)
signals=$(awk -v o="$owner" '$1 == "sig" && $4 == o {print $NF}' "$work/traffic.txt" | sort |
    uniq -c | sort -rn | awk '{printf "%s%s x%s", sep, $2, $1; sep=", "}')
calls=$(awk -v o="$owner" '$1 == "mc" && $5 == o {print $NF}' "$work/traffic.txt" | sort |
    uniq -c | sort -rn | awk '{printf "%s%s x%s", sep, $2, $1; sep=", "}')
ticks=$seconds
echo "lumetra $owner, $seconds s at the 1 s interval$([ $steady = 1 ] && echo ', steady label')$([ $xfce = 1 ] && echo ', xfce4-panel hosting')"
echo "messages: $messages (signals: ${signals:-none}; calls in: ${calls:-none})"
echo "bytes: $bytes, per tick: $(awk -v b="$bytes" -v t="$ticks" 'BEGIN {printf "%.0f", b / t}')"
