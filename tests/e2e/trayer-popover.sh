#!/bin/sh
# The panel item in a real XEmbed tray (trayer, no StatusNotifierWatcher): the fallback icon
# appears, a click on it opens the 280-wide popover beside it, a click elsewhere hides it.
# Run under xvfb-run and dbus-run-session; $1 is the lumetra binary. Screenshots go to
# $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$1
command -v trayer >/dev/null || { echo "SKIP: trayer is not installed"; exit 77; }
command -v xdotool >/dev/null || { echo "SKIP: xdotool is not installed"; exit 77; }
. "$(dirname "$0")/lib.sh"
e2e_home
cleanup() {
    kill "${app:-}" "${tray:-}" 2>/dev/null
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

trayer --edge top --align right --widthtype request --height 24 --SetDockType true \
    --transparent false --tint 0x303030 >"$work/trayer.log" 2>&1 &
tray=$!
# The tray is up once its window is (the icon would find it later too, but later costs time).
tray_up() { xdotool search --pid "$tray" >/dev/null 2>&1; }
wait_until 10 tray_up || { cat "$work/trayer.log"; fail "trayer never showed"; }
"$lumetra" >"$work/app.log" 2>&1 &
app=$!

# The first mapped window of the app whose size passes the test `$1` (on width and height).
find_window() {
    for id in $(xdotool search --pid "$app" 2>/dev/null); do
        set -- $(geometry "$id") "$1"
        if [ -n "${4:-}" ] && eval "$5" && mapped "$id"; then echo "$id"; return 0; fi
    done
    return 1
}
# Polls for such a window for up to $2 tenths of a second.
wait_window() {
    i=0
    until found=$(find_window "$1"); do
        i=$((i + 1))
        [ $i -gt "$2" ] && return 1
        sleep 0.1
    done
    echo "$found"
}

# The tray icon: a small lumetra window embedded in the tray.
icon=$(wait_window '[ "$3" -ge 8 ] && [ "$3" -le 64 ] && [ "$4" -le 64 ]' 100) ||
    { echo "FAIL: no tray icon"; xwininfo -root -tree; cat "$work/app.log"; exit 1; }
set -- $(geometry "$icon")
ix=$1 iy=$2 iw=$3 ih=$4
echo "tray icon $icon at ${ix},${iy} ${iw}x${ih}"
shot tray.png

# 280 wide, or a scroll bar wider where the screen is too low for the whole dashboard.
is_popover='[ "$3" -ge 280 ] && [ "$3" -le 300 ]'
xdotool mousemove $((ix + iw / 2)) $((iy + ih / 2)) click 1
popover=$(wait_window "$is_popover" 100) ||
    { echo "FAIL: no popover after the click"; xwininfo -root -tree; cat "$work/app.log"; exit 1; }
set -- $(geometry "$popover")
px=$1 py=$2 pw=$3 ph=$4
echo "popover $popover at ${px},${py} ${pw}x${ph}"
shot popover.png
# Beside the icon: right under the tray that holds it (the tray is at the top, a pixel or
# two taller than the icon), its 280 wide body centred on it unless the screen edge pushed it
# in.
screen_w=$(xwininfo -root | awk '/Width:/{print $NF}')
[ "$py" -ge $((iy + ih)) ] && [ "$py" -le $((iy + ih + 4)) ] ||
    { echo "FAIL: popover top $py is not just under the icon's bottom $((iy + ih))"; exit 1; }
centre=$((ix + iw / 2 - 140))
[ $centre -gt $((screen_w - pw)) ] && centre=$((screen_w - pw))
[ $((px - centre)) -le 1 ] && [ $((centre - px)) -le 1 ] || { echo "FAIL: popover x $px, expected $centre"; exit 1; }

# A click elsewhere hides it.
xdotool mousemove 200 200 click 1
i=0
while find_window "$is_popover" >/dev/null; do
    i=$((i + 1))
    if [ $i -gt 80 ]; then echo "FAIL: the popover stayed after a click elsewhere"; exit 1; fi
    sleep 0.1
done
shot hidden.png
# The icon opens it again, and a click on the icon while it is open closes it (once: the
# popup's own outside-click and the icon's activation are one click).
xdotool mousemove $((ix + iw / 2)) $((iy + ih / 2)) click 1
wait_window "$is_popover" 80 >/dev/null || { echo "FAIL: the popover did not come back"; cat "$work/app.log"; exit 1; }
sleep 0.3
xdotool click 1
i=0
while find_window "$is_popover" >/dev/null; do
    i=$((i + 1))
    if [ $i -gt 80 ]; then echo "FAIL: a click on the icon did not close the open popover"; exit 1; fi
    sleep 0.1
done
# Once: it stays closed.
sleep 0.5
if find_window "$is_popover" >/dev/null; then echo "FAIL: the click on the icon opened the popover again"; exit 1; fi
echo "PASS"
