#!/bin/sh
# The panel item in KDE Plasma 5.27's system tray (plasmashell hosts the items, kded5's module
# is the watcher, KWin manages the windows as in a real session): the item registers; the
# tray in the bottom panel draws the live icon, its CPU and memory bars in their level
# colours pixel for pixel as the item's IconPixmap has them; Activate at the icon's centre, as
# the tray sends it, opens the 280-wide popover above the panel without covering it, beside
# the icon and on the screen; a second Activate closes it; real clicks on the icon through
# the tray open and close it, and a click on the desktop closes it.
# Run under xvfb-run (1280 × 800) and dbus-run-session; $1 is the lumetra binary. Screenshots
# go to $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$1
for tool in kwin_x11 kded5 plasmashell xdotool xprop import compare python3 dbus-update-activation-environment; do
    command -v $tool >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
here=$(dirname "$0")
. "$here/lib.sh"
e2e_home
bus_pids() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.ListNames 2>/dev/null | grep -o "':1\.[0-9]*'" | tr -d "'" |
        while read -r name; do owner_pid "$name"; done | sort -u
}
cleanup() {
    kill ${app:-} ${shell:-} ${kded:-} ${kwin:-} 2>/dev/null
    # The services the bus started for them (kglobalaccel5, kactivitymanagerd, the KScreen
    # backend, a stand-in for the splash screen that waits a minute for it) outlive them and
    # keep the test's output open: end every other client of this test's private bus.
    for pid in $(bus_pids); do
        [ "$pid" != $$ ] && kill "$pid" 2>/dev/null
    done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 1' INT TERM
keep_shot() {
    if [ -n "${LUMETRA_E2E_SHOTS:-}" ]; then mkdir -p "$LUMETRA_E2E_SHOTS" && cp "$work/$1" "$LUMETRA_E2E_SHOTS/$1"; fi
}
t_start=$(now_ms)
since() { echo "$(($(now_ms) - t_start)) ms"; }

# CPU and memory as the icon's two bars, sampled every 5 s so the icon holds still long
# enough to be compared with the screen.
e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 5.0, "enabledMetrics": ["cpu", "memory"]'
# A Plasma session's environment, in the private home. No animations: the tray cross-fades
# an icon that changed, and a screenshot in the middle of that matches neither picture.
export XDG_CURRENT_DESKTOP=KDE XDG_SESSION_TYPE=x11 XDG_RUNTIME_DIR="$work/runtime"
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
printf '[KDE]\nAnimationDurationFactor=0\n' >"$XDG_CONFIG_HOME/kdeglobals"
dbus-update-activation-environment HOME XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME DISPLAY \
    XDG_CURRENT_DESKTOP XDG_SESSION_TYPE XDG_RUNTIME_DIR 2>/dev/null

# The window manager first, as in a session: it publishes the work area the panel reserves.
kwin_x11 >"$work/kwin.log" 2>&1 &
kwin=$!
wm_up() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
wait_until 30 wm_up || { cat "$work/kwin.log"; fail "KWin never came up"; }
# The watcher is a module of kded5 that a full session loads; here it is asked for.
kded5 >"$work/kded.log" 2>&1 &
kded=$!
wait_until 30 has_owner org.kde.kded5 || { cat "$work/kded.log"; fail "kded5 never came up"; }
gdbus call --session --dest org.kde.kded5 --object-path /kded --method org.kde.kded5.loadModule \
    statusnotifierwatcher >/dev/null
wait_until 10 has_owner org.kde.StatusNotifierWatcher || { cat "$work/kded.log"; fail "kded5 loaded no watcher"; }
plasmashell --no-respawn >"$work/plasma.log" 2>&1 &
shell=$!
host_registered() {
    gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher \
        IsStatusNotifierHostRegistered 2>/dev/null | grep -q true
}
# The watcher says a host is registered before any is; the tray's own name says it is there.
tray_up() { has_owner "org.kde.StatusNotifierHost-$shell" && host_registered; }
wait_until 30 tray_up || { tail -20 "$work/plasma.log"; fail "plasmashell's tray never registered as a host"; }
echo "$(since): KWin, the watcher and the tray are up"

set -- $(xwininfo -root | awk '/Width:/{w=$NF} /Height:/{h=$NF} END{print w, h}')
screen_w=$1 screen_h=$2
# The panel: plasmashell's window across the bottom of the screen, and the work area KWin
# published above it.
panel_window() {
    for id in $(xdotool search --pid "$shell" 2>/dev/null); do
        set -- $(geometry "$id") "$id"
        [ "$3" -eq "$screen_w" ] && [ "$4" -lt $((screen_h / 4)) ] &&
            [ $(($2 + $4)) -eq "$screen_h" ] && mapped "$5" && echo "$2" && return 0
    done
    return 1
}
work_area_bottom() {
    xprop -root _NET_WORKAREA 2>/dev/null | sed -n 's/.*= *\([0-9]*\), *\([0-9]*\), *\([0-9]*\), *\([0-9]*\).*/\2 \4/p' |
        awk '{print $1 + $2}'
}
panel_up() {
    panel_top=$(panel_window) && [ "$(work_area_bottom)" = "$panel_top" ]
}
wait_until 20 panel_up ||
    fail "no bottom panel with the work area above it (panel top ${panel_top:-none}, work area's bottom $(work_area_bottom))"
echo "$(since): the panel is ${screen_w}x$((screen_h - panel_top)) at y $panel_top, the work area ends there"

"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 10 find_item "$app" || { watcher_items; cat "$work/app.log"; fail "lumetra's item never registered with the watcher"; }
echo "$(since): item $item_service $item_path registered"

# The live icon in the tray: the right half of the panel, where the tray stands beside the
# clock. A screenshot counts when the icon held still from a second before it until after it.
memory_percent() {
    awk '/^MemTotal:/{t=$2} /^MemAvailable:/{a=$2} END{printf "%.2f", (t - a) * 100 / t}' /proc/meminfo
}
tray_left=$((screen_w / 2))
icon="no screenshot was taken"
icon_shown() {
    item_property IconPixmap >"$work/before.txt"
    memory=$(memory_percent)
    sleep 1
    import -window root "$work/kde-tray.png" || return 1
    item_property IconPixmap >"$work/after.txt"
    cmp -s "$work/before.txt" "$work/after.txt" || { icon="it changed while the screen was taken"; return 1; }
    /usr/bin/convert "$work/kde-tray.png" -crop $((screen_w - tray_left))x$((screen_h - panel_top))+$tray_left+$panel_top \
        +repage -depth 8 "ppm:$work/tray.ppm" &&
        icon=$(python3 "$here/tray-icon.py" "$work/after.txt" "$work/tray.ppm" $tray_left "$panel_top" "$memory")
}
wait_until 30 icon_shown || { keep_shot kde-tray.png; fail "the tray does not show the live icon: $icon"; }
keep_shot kde-tray.png
echo "$icon" | sed -n 's/^# //p'
set -- $icon
ix=$1 iy=$2 isize=$3
echo "$(since): the ${isize} px live icon is drawn at $ix,$iy (memory $memory %)"
[ "$isize" -ge 16 ] && [ "$isize" -le 24 ] || fail "the tray drew the icon at $isize px"
[ "$iy" -ge "$panel_top" ] && [ $((iy + isize)) -le "$screen_h" ] || fail "the icon at y $iy is not in the panel"
cx=$((ix + isize / 2)) cy=$((iy + isize / 2))

# check_popover WHAT: the popover is open, standing on the panel's top edge (the bottom of
# the work area) without covering it, across the icon, wholly on the screen.
check_popover() {
    wait_until 3 popover_of "$app" >/dev/null || { cat "$work/app.log"; fail "no popover after $1"; }
    set -- $(geometry "$(popover_of "$app")") "$1"
    echo "$(since): after $5 the popover is ${3}x$4 at $1,$2"
    [ $(($2 + $4)) -le "$panel_top" ] || fail "the popover's bottom $(($2 + $4)) covers the panel (top $panel_top)"
    [ $(($2 + $4)) -ge $((panel_top - 4)) ] || fail "the popover's bottom $(($2 + $4)) is not on the panel's top $panel_top"
    [ "$1" -le "$cx" ] && [ "$cx" -le $(($1 + $3)) ] || fail "the popover ($1..$(($1 + $3))) is not above the icon at x $cx"
    [ "$1" -ge 0 ] && [ "$2" -ge 0 ] && [ $(($1 + $3)) -le "$screen_w" ] ||
        fail "the popover ${3}x$4+$1+$2 is not wholly on the ${screen_w}x$screen_h screen"
}

# What the tray sends on a click: Activate with the icon's centre in screen coordinates.
item_activate $cx $cy
check_popover "Activate($cx, $cy)"
# On the screen: KWin composites it a frame or more after it is mapped. The panel's top rows
# under it are the panel's, as before it opened.
set -- $(geometry "$(popover_of "$app")")
px=$1 py=$2 pw=$3 ph=$4
changed() { # crop: how many of its pixels differ between the tray's screenshot and the popover's
    compare -metric AE -fuzz 3% "$work/kde-tray.png[$1]" "$work/kde-popover.png[$1]" null: 2>&1 | cut -d' ' -f1
}
popover_drawn() {
    import -window root "$work/kde-popover.png" &&
        drawn=$(changed ${pw}x${ph}+$px+$py) && [ "$drawn" -gt $((pw * ph / 2)) ]
}
wait_until 5 popover_drawn || { keep_shot kde-popover.png; fail "the popover is mapped but not drawn ($drawn of $((pw * ph)) pixels changed)"; }
keep_shot kde-popover.png
covered=$(changed ${pw}x6+$px+$panel_top)
echo "$(since): the popover is drawn ($drawn of $((pw * ph)) pixels changed); $covered of the panel's top rows under it changed"
[ "$covered" -le $((pw * 6 / 20)) ] || fail "the popover covers the panel's top: $covered of its $((pw * 6)) pixels under it changed"
item_activate $cx $cy
wait_until 3 no_popover_of "$app" || fail "a second Activate did not close the popover"

# A person's clicks, through the tray: on the icon it opens, on the desktop it closes; on the
# icon while open it closes once (the popup's own outside-click and the tray's Activate are
# one click: it must not open again).
xdotool mousemove $cx $cy click 1
check_popover "a click on the icon"
xdotool mousemove $((screen_w / 4)) $((panel_top / 2)) click 1
wait_until 3 no_popover_of "$app" || fail "a click on the desktop did not close the popover"
xdotool mousemove $cx $cy click 1
check_popover "another click on the icon"
sleep 0.3
xdotool click 1
wait_until 3 no_popover_of "$app" || fail "a click on the icon did not close the open popover"
sleep 0.7
popover_of "$app" >/dev/null && fail "the click on the icon opened the popover again"

kill -0 "$app" || fail "lumetra is gone"
echo "PASS in $(since)"
