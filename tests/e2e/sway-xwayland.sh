#!/bin/sh
# The popover under headless sway with Xwayland, waybar's tray as the host: lumetra runs as an
# X11 client (DISPLAY and WAYLAND_DISPLAY both set). sway centres managed X11 windows instead
# of putting them where asked, so the popover must end up where lumetra puts it all the same:
# under the tray's item, below the bar. A click elsewhere (the empty desktop, another window)
# closes it, and so do Escape and a click on the item. Input is real: sway's own cursor
# commands on a virtual pointer, and a virtual keyboard (wtype).
# $1 is the lumetra binary. Headless sway refuses to run as root, so run as root the test goes
# on as the system user lumetra-e2e (created when missing) on a private session bus.
# Screenshots go to $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
here=$(cd "$(dirname "$0")" && pwd)

. "$here/sway-lib.sh"

if [ "${LUMETRA_E2E_INNER:-}" != 1 ]; then
    for tool in sway swaymsg waybar grim Xwayland wtype xwininfo xdotool python3 dbus-run-session gdbus setpriv; do
        command -v $tool >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
    done
    [ -x /usr/bin/convert ] || { echo "SKIP: imagemagick is not installed"; exit 77; }
    sway_run_as_user sway-xwayland.sh "$here/virtual-pointer.py"
fi

# From here on: the unprivileged user, on a private session bus.
shots=$2
. "$here/lib.sh"
e2e_home
cleanup() {
    for pid in ${keyboard:-} ${monitor:-} ${app:-} ${settings:-} ${pointer:-} ${bar:-} ${sway:-}; do kill_tree "$pid"; done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP
unset DISPLAY WAYLAND_DISPLAY WAYLAND_SOCKET LC_ALL LANGUAGE QT_QPA_PLATFORM
export LANG=C.UTF-8
export XDG_RUNTIME_DIR="$work/runtime" XDG_CURRENT_DESKTOP=sway XDG_SESSION_TYPE=wayland NO_AT_BRIDGE=1
mkdir -m 700 "$XDG_RUNTIME_DIR"
e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0, "enabledMetrics": ["memory"], "memoryFormat": "percentageOnly", "menuBarDisplayStyle": "textOnly"'
width=1280
height=800
bar_height=30

t_start=$(now_ms)
cat >"$work/sway.conf" <<CONF
xwayland enable
output HEADLESS-1 resolution ${width}x$height background #202020 solid_color
CONF
sway_start "$work/sway.conf"
export SWAYSOCK
SWAYSOCK=$(ls "$XDG_RUNTIME_DIR"/sway-ipc.*.sock 2>/dev/null | head -1)
# sway starts Xwayland when the first X11 client comes, on the display whose lock file names
# sway's process (the display is free of any other X server on this machine).
xwayland_display() {
    for lock in /tmp/.X*-lock; do
        [ "$(tr -d ' \n' <"$lock" 2>/dev/null)" = "$sway" ] || continue
        number=${lock#/tmp/.X}
        export DISPLAY=":${number%-lock}"
        return 0
    done
    return 1
}
wait_until 5 xwayland_display || { tail -n 20 "$work/sway.log"; echo "SKIP: sway offers no Xwayland display"; exit 77; }
echo "sway listens on $WAYLAND_DISPLAY and $DISPLAY after $(($(now_ms) - t_start)) ms"

# A seat without a pointer gives clients none: a virtual one makes sway's cursor commands reach
# them as a person's clicks would.
python3 "$here/virtual-pointer.py" >"$work/pointer.log" 2>&1 &
pointer=$!
pointer_added() { swaymsg -t get_inputs 2>/dev/null | grep -q '"type": "pointer"'; }
wait_until 5 pointer_added || { cat "$work/pointer.log"; fail "no virtual pointer"; }
click() {
    swaymsg "seat - cursor set $1 $2" >/dev/null &&
        swaymsg "seat - cursor press button1" >/dev/null &&
        swaymsg "seat - cursor release button1" >/dev/null
}

style=/etc/xdg/waybar/style.css
[ -r "$style" ] || fail "waybar's default style $style is missing"
cat >"$work/waybar.json" <<JSON
{ "layer": "top", "position": "top", "height": $bar_height, "modules-right": ["tray"],
  "tray": { "icon-size": 24, "spacing": 8 } }
JSON
waybar -c "$work/waybar.json" -s "$style" >"$work/waybar.log" 2>&1 &
bar=$!
wait_until 15 has_owner org.kde.StatusNotifierWatcher || { cat "$work/waybar.log"; fail "waybar's tray watcher never appeared"; }

# No QT_QPA_PLATFORM: with DISPLAY set, lumetra goes through Xwayland by itself.
"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 15 find_item "$app" || { watcher_items; cat "$work/app.log" "$work/waybar.log"; fail "lumetra's item never registered with waybar's tray"; }
echo "item $item_service registered after $(($(now_ms) - t_start)) ms"

# Where waybar draws the item: the tray's blue box in a screenshot.
tray_box() {
    grim -g "0,0 ${width}x$bar_height" "$work/bar.png" 2>/dev/null &&
        /usr/bin/convert "$work/bar.png" -fuzz 3% -fill black +opaque '#2980b9' -trim \
            -format '%w %h %[fx:page.x] %[fx:page.y]' info: 2>/dev/null
}
item_drawn() { set -- $(tray_box); [ $# -eq 4 ] && [ "$1" -gt 24 ] && [ "$1" -lt $width ]; }
wait_until 10 item_drawn || fail "waybar draws no item in its tray: '$(tray_box)'"
set -- $(tray_box)
item_x=$(($3 + $1 / 2))
item_y=$((bar_height / 2))
echo "the tray's item is drawn at x $3..$(($3 + $1)); its centre $item_x,$item_y"

screenshot() { grim "$shots/$1" 2>/dev/null; }
# The popover: a mapped window of lumetra's 280 wide, or a scroll bar wider (the managed one
# it replaces may vanish while being looked at).
popover() {
    for id in $(xdotool search --pid "$app" 2>/dev/null); do
        set -- $(geometry "$id" 2>/dev/null)
        [ $# -eq 4 ] && [ "$3" -ge 280 ] && [ "$3" -le 300 ] && mapped "$id" && echo "$id" && return 0
    done
    return 1
}
no_popover() { ! popover >/dev/null; }
# Whole within the screen, its top right under the bar; with `under`, also across the
# item's centre.
check_popover() {
    id=$(popover) || { cat "$work/app.log"; fail "$1 opened no popover"; }
    set -- "$1" $(geometry "$id" 2>/dev/null) "${2:-}"
    [ $# -eq 6 ] || fail "the popover $id vanished"
    echo "$(($(now_ms) - t_start)) ms: $1 opened the popover at $2,$3 ${4}x$5 ($(xwininfo -id "$id" | sed -n 's/.*Override Redirect State: //p') override-redirect)"
    [ "$2" -ge 0 ] && [ $(($2 + $4)) -le $width ] && [ "$3" -ge 0 ] && [ $(($3 + $5)) -le $height ] ||
        fail "the popover at $2,$3 ${4}x$5 is not within the ${width}x$height screen"
    # Right under the bar: sway publishes no work area and the bar is no X11 window, so
    # lumetra takes the bar for a band twice as thick as the click's distance from the top.
    [ "$3" -ge $bar_height ] && [ "$3" -le $((bar_height + 4)) ] ||
        fail "the popover's top $3 is not right under the bar's bottom $bar_height"
    if [ "$6" = under ]; then
        [ "$2" -le $item_x ] && [ $(($2 + $4)) -ge $item_x ] ||
            fail "the popover at x $2..$(($2 + $4)) is not under the item at x $item_x"
    fi
}

# A real click on the item: waybar calls Activate. Debian 12's waybar (0.9.17) gives the
# click relative to the item, not on the screen (later releases add the bar's position);
# lumetra then takes the tray's usual place, the right end of the bar, where it is here.
dbus-monitor "interface=org.kde.StatusNotifierItem,member=Activate" >"$work/activate.log" 2>&1 &
monitor=$!
sleep 0.3
click $item_x $item_y
wait_until 5 popover >/dev/null || { cat "$work/app.log"; fail "a click on the item opened no popover"; }
# Placed where lumetra put it once the window manager's moves are behind.
sleep 1
activated=$(sed -n '/member=Activate/{n;s/.*int32 //p;n;s/.*int32 //p}' "$work/activate.log" | tr '\n' ' ')
kill $monitor 2>/dev/null
monitor=
echo "waybar called Activate($activated) for the click at $item_x,$item_y"
check_popover "the click on the item" under
screenshot sway-xwayland-click.png
# A click on the empty desktop.
click 300 600
wait_until 3 no_popover || fail "a click on the desktop did not close the popover"
echo "$(($(now_ms) - t_start)) ms: a click at 300,600 on the desktop closed it"

# Activate where the item is on the screen, as the StatusNotifierItem protocol (and later
# waybars) have it.
item_activate $item_x $item_y
wait_until 5 popover >/dev/null || { cat "$work/app.log"; fail "Activate($item_x, $item_y) opened no popover"; }
sleep 0.5
check_popover "Activate($item_x, $item_y)" under
screenshot sway-xwayland-popover.png
# The click on the item again closes it.
click $item_x $item_y
wait_until 3 no_popover || fail "a second click on the item did not close the popover"
echo "$(($(now_ms) - t_start)) ms: a second click on the item closed it"

# Escape from a virtual keyboard, added before the popover opens: sway gives a keyboard that
# comes later to the focused ordinary window, as a person's keyboard is there all along.
wtype -s 2500 -k Escape &
keyboard=$!
sleep 1
item_activate $item_x $item_y
wait_until 3 popover >/dev/null || fail "Activate($item_x, $item_y) opened no popover"
wait "$keyboard"
keyboard=
wait_until 3 no_popover || fail "Escape did not close the popover"
echo "$(($(now_ms) - t_start)) ms: Escape closed it"

# Another window of ours (the settings), then a click on it.
item_activate $item_x $item_y
wait_until 3 popover >/dev/null || fail "Activate($item_x, $item_y) opened no popover"
"$lumetra" --settings >>"$work/app.log" 2>&1
# The settings window: the one X11 window sway manages (the popover bypasses it), as the
# centre of its rectangle.
settings_centre() {
    swaymsg -t get_tree | python3 -c '
import json, sys
def walk(node):
    if node.get("shell") == "xwayland" and node.get("visible"):
        r = node["rect"]
        print(r["x"] + r["width"] // 2, r["y"] + r["height"] // 2)
        sys.exit()
    for child in node.get("nodes", []) + node.get("floating_nodes", []):
        walk(child)
walk(json.load(sys.stdin))'
}
settings_shown() { [ -n "$(settings_centre)" ]; }
wait_until 5 settings_shown || { swaymsg -t get_tree; fail "lumetra --settings opened no window"; }
sleep 0.5
screenshot sway-xwayland-settings.png
set -- $(settings_centre)
[ $# -eq 2 ] || fail "the settings window has no rectangle"
if popover >/dev/null; then
    click "$1" "$2"
    wait_until 3 no_popover || fail "a click on the settings window at $1,$2 did not close the popover"
    echo "$(($(now_ms) - t_start)) ms: a click on the settings window at $1,$2 closed it"
else
    echo "$(($(now_ms) - t_start)) ms: the settings window closed it as it took the focus"
fi
# A click on the settings window, already there.
settings_x=$1 settings_y=$2
item_activate $item_x $item_y
wait_until 3 popover >/dev/null || fail "Activate($item_x, $item_y) opened no popover"
sleep 0.5
click $settings_x $settings_y
wait_until 3 no_popover || fail "a click on the settings window at $settings_x,$settings_y did not close the popover"
echo "$(($(now_ms) - t_start)) ms: a click on the settings window at $settings_x,$settings_y closed it"

# A native Wayland window (a terminal, when one is installed), tiled under the popover. It runs
# sleep, not a shell: the test user's login shell is nologin, which would close it at once.
if command -v foot >/dev/null; then
    swaymsg exec "foot -o font=monospace:size=10 sleep 600 >'$work/foot.log' 2>&1" >/dev/null
    foot_shown() { swaymsg -t get_tree | grep -q '"app_id": "foot"'; }
    wait_until 10 foot_shown || { cat "$work/foot.log"; fail "foot did not start"; }
    item_activate $item_x $item_y
    wait_until 3 popover >/dev/null || fail "Activate($item_x, $item_y) opened no popover"
    sleep 0.5
    screenshot sway-xwayland-foot.png
    click 300 600
    wait_until 3 no_popover || fail "a click on foot's window did not close the popover"
    echo "$(($(now_ms) - t_start)) ms: a click at 300,600 on foot's tiled window closed it"
    # sway stacks floating windows over the catcher: a click on one goes to it.
    swaymsg '[app_id="foot"] floating enable, move position 100 100, resize set 500 400' >/dev/null
    sleep 0.3
    item_activate $item_x $item_y
    wait_until 3 popover >/dev/null || fail "Activate($item_x, $item_y) opened no popover"
    sleep 0.5
    click 300 300
    if wait_until 3 no_popover; then
        echo "$(($(now_ms) - t_start)) ms: a click at 300,300 on foot's floating window closed it"
    else
        screenshot sway-xwayland-floating.png
        fail "a click on foot's floating window did not close the popover"
    fi
fi

kill -0 "$app" || fail "lumetra is gone"
echo "PASS in $(($(now_ms) - t_start)) ms"
