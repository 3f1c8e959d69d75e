#!/bin/sh
# One panel app per session, with no panel at all: a second `lumetra` exits 0 at once and the
# running one shows its 280-wide popover. Run under xvfb-run and dbus-run-session (see
# tests/CMakeLists.txt); $1 is the lumetra binary.
set -u
lumetra=$1
work=$(mktemp -d)
trap 'kill "$first" 2>/dev/null; wait "$first" 2>/dev/null; rm -rf "$work"' EXIT
export XDG_CONFIG_HOME="$work/config" HOME="$work" LUMETRA_UPDATE_MANIFEST_URL=http://127.0.0.1:9/
mkdir -p "$XDG_CONFIG_HOME/lumetra"
# A user who finished onboarding: no welcome window in the way.
echo '{"hasCompletedOnboarding": true, "showWelcomeScreen": false}' >"$XDG_CONFIG_HOME/lumetra/settings.json"

"$lumetra" >"$work/first.log" 2>&1 &
first=$!
# Wait until the first one owns the bus name.
i=0
until gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
    --method org.freedesktop.DBus.NameHasOwner io.lumetra.Lumetra 2>/dev/null | grep -q true; do
    i=$((i + 1))
    if [ $i -gt 100 ]; then echo "FAIL: the first lumetra never claimed its bus name"; cat "$work/first.log"; exit 1; fi
    sleep 0.1
done

if xwininfo -root -tree | grep -E '"lumetra".* (28[0-9]|29[0-9]|300)x[0-9]+' >/dev/null; then
    echo "FAIL: a popover is shown before anyone asked for it"; exit 1
fi

start=$(date +%s%N)
timeout 5 "$lumetra" >"$work/second.log" 2>&1
rc=$?
elapsed_ms=$(( ($(date +%s%N) - start) / 1000000 ))
echo "second start: exit $rc after ${elapsed_ms} ms"
[ "$rc" -eq 0 ] || { echo "FAIL: second start exited $rc"; cat "$work/second.log"; exit 1; }
[ "$elapsed_ms" -lt 2000 ] || { echo "FAIL: second start took ${elapsed_ms} ms"; exit 1; }
kill -0 "$first" || { echo "FAIL: the first lumetra is gone"; exit 1; }

i=0
until xwininfo -root -tree | grep -E '"lumetra".* (28[0-9]|29[0-9]|300)x[0-9]+' >"$work/popover.txt"; do
    i=$((i + 1))
    if [ $i -gt 30 ]; then echo "FAIL: no 280-wide popover window"; xwininfo -root -tree; cat "$work/first.log"; exit 1; fi
    sleep 0.1
done
echo "popover: $(cat "$work/popover.txt")"

# --settings is forwarded too, and the second start still exits at once.
timeout 5 "$lumetra" --settings >"$work/third.log" 2>&1 || { echo "FAIL: --settings start failed"; exit 1; }
kill -0 "$first" || { echo "FAIL: the first lumetra is gone after --settings"; exit 1; }
echo "PASS"
