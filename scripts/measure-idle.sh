#!/usr/bin/env bash
# What the panel app costs at idle: CPU (% of one core, from /proc/PID/stat) and resident
# memory over MEASURE seconds (default 60) at the 1 s interval, first with the popover closed,
# then open. It runs on a virtual X server with a private session bus, in xfce4-panel's status
# tray when that is installed (so the item and its label are live), else (or with
# LUMETRA_MEASURE_HOST=none) with no panel at all.
# Budget with the popover closed: at most 0.5 % and 80 MB (the aim 0.25 % and 60 MB).
#   scripts/measure-idle.sh [path/to/lumetra]       (default: build/lumetra)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
lumetra=$(realpath "${1:-$root/build/lumetra}")
measure=${MEASURE:-60}
settle=${SETTLE:-10}

if [ -z "${LUMETRA_MEASURE_INSIDE:-}" ]; then
    [ -x "$lumetra" ] || { echo "no lumetra binary at $lumetra (build it, or pass its path)" >&2; exit 1; }
    export LUMETRA_MEASURE_INSIDE=1
    exec xvfb-run -a -s "-screen 0 1280x800x24" dbus-run-session -- bash "$0" "$lumetra"
fi

# shellcheck source=/dev/null
. "$root/tests/e2e/lib.sh"
e2e_home
app= panel=
cleanup() {
    kill $app $panel 2>/dev/null || true
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
hz=$(getconf CLK_TCK)
ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
rss_mb() { awk '/^VmRSS/{printf "%.1f", $2 / 1024}' "/proc/$1/status"; }

host="no panel"
if [ "${LUMETRA_MEASURE_HOST:-xfce}" != none ] && command -v xfce4-panel >/dev/null; then
    xfce_panel_config
    xfce_panel_start && host="xfce4-panel's status tray"
fi

"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 10 has_owner io.lumetra.Lumetra || { cat "$work/app.log"; echo "lumetra did not start" >&2; exit 1; }

# window NAME: CPU and RSS of the app over one measuring window.
window() {
    sleep "$settle"
    local before t0 after elapsed
    before=$(ticks "$app")
    t0=$(date +%s%N)
    sleep "$measure"
    after=$(ticks "$app")
    elapsed=$(($(date +%s%N) - t0))
    awk -v d=$((after - before)) -v hz="$hz" -v ns="$elapsed" -v rss="$(rss_mb "$app")" -v name="$1" \
        'BEGIN{printf "%-15s CPU %.2f %% of one core, RSS %s MB\n", name, d / hz / (ns / 1e9) * 100, rss}'
}

echo "lumetra at the 1 s interval, $host, $(nproc) cores, ${measure} s windows"
# The item's D-Bus traffic in the closed window: every message from or to its connection.
monitor=
if find_item "$app" 2>/dev/null; then
    owner=$(gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.GetNameOwner "$item_service" | sed -n "s/^('\(.*\)',)$/\1/p")
    dbus-monitor --session --pcap "sender=$owner" "destination=$owner" >"$work/bus.pcap" 2>/dev/null &
    monitor=$!
fi
window "popover closed"
if [ -n "$monitor" ]; then
    kill "$monitor"
    wait "$monitor" 2>/dev/null || true
    # pcap: a 24-byte file header, then per message a 16-byte record header and the message.
    python3 - "$work/bus.pcap" "$((measure + settle))" <<'PY'
import struct, sys
from collections import Counter

def member(message):
    """The message's member, or its reply kind, from the D-Bus header fields."""
    order = "<" if message[0:1] == b"l" else ">"
    kind = message[1]
    if kind == 2:
        return "(method return)"
    if kind == 3:
        return "(error)"
    fields_end = 16 + struct.unpack_from(order + "I", message, 12)[0]
    at = 16
    while at < fields_end:
        at = (at + 7) & ~7
        code, signature_length = message[at], message[at + 1]
        signature = message[at + 2:at + 2 + signature_length].decode()
        at += 3 + signature_length
        if signature in ("s", "o"):
            at = (at + 3) & ~3
            length = struct.unpack_from(order + "I", message, at)[0]
            if code == 3:
                return message[at + 4:at + 4 + length].decode()
            at += 5 + length
        elif signature == "g":
            at += 2 + message[at]
        else:  # u
            at = ((at + 3) & ~3) + 4
    return "?"

data = open(sys.argv[1], "rb").read()
seconds = float(sys.argv[2])
at, count, total = 24, 0, 0
by_member = Counter()
while at + 16 <= len(data):
    length = struct.unpack_from("<I", data, at + 8)[0]
    message = data[at + 16:at + 16 + length]
    at += 16 + length
    count += 1
    total += length
    by_member[member(message)] += length
print(f"D-Bus, popover closed: {count} messages, {total} bytes in {seconds:.0f} s"
      f" = {total / seconds:.0f} bytes per 1 s tick")
for name, size in by_member.most_common():
    print(f"  {name}: {size / seconds:.0f} bytes per tick")
PY
fi
# A second start opens the running one's popover.
"$lumetra" >/dev/null 2>&1
wait_until 5 popover_of "$app" >/dev/null || { echo "the popover did not open" >&2; exit 1; }
window "popover open"
popover_of "$app" >/dev/null || echo "(the popover closed during the window)"
