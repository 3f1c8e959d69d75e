#!/bin/sh
# The panel item in xfce4-panel's status tray (a StatusNotifierItem host that is also the
# watcher): the item registers, its icon shows in the panel, a click on it with the pointer
# toggles the 280-wide popover under the panel and wholly on the screen, and after the panel
# is killed and started again the item is back within 2 s. With QT_SCALE_FACTOR set, the
# same holds in the X server's pixels (the popover then 280 times the factor wide).
# Run under xvfb-run and dbus-run-session; $1 is the lumetra binary. Screenshots go to
# $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$1
for tool in xfce4-panel xdotool import compare dbus-update-activation-environment; do
    command -v $tool >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
. "$(dirname "$0")/lib.sh"
e2e_home
cleanup() {
    kill "${app:-}" "${panel:-}" 2>/dev/null
    wait 2>/dev/null
    # The bus started xfconfd for the panel; it would write the settings back into the
    # private home after it is gone.
    xfconfd=$(owner_pid org.xfce.Xfconf)
    [ -n "$xfconfd" ] && kill "$xfconfd" 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT

xfce_panel_config
start_panel() {
    xfce_panel_start || { cat "$work/panel.log"; fail "the panel's watcher never appeared"; }
}
start_panel
screen_w=$(xwininfo -root | awk '/Width:/{print $NF}')
# The empty panel, once it is drawn (the bare screen is black).
panel_drawn() {
    import -window root -crop ${screen_w}x32+0+0 "$work/before.png" &&
        [ "$(/usr/bin/convert "$work/before.png" -format '%[fx:mean > 0.3]' info:)" = 1 ]
}
wait_until 10 panel_drawn || fail "the panel never drew itself"

t0=$(now_ms)
"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 10 find_item "$app" || { watcher_items; cat "$work/app.log"; fail "lumetra's item never registered with the watcher"; }
echo "item $item_service $item_path registered after $(($(now_ms) - t0)) ms"

# The panel draws the icon: its strip changes where the item sits.
panel_changed() {
    import -window root -crop ${screen_w}x32+0+0 "$work/after.png"
    changed=$(compare -metric AE "$work/before.png" "$work/after.png" null: 2>&1)
    [ "${changed%% *}" -ge 40 ] 2>/dev/null
}
wait_until 5 panel_changed || fail "the panel shows nothing new after the item registered ($changed pixels changed)"
echo "icon: $changed pixels of the panel changed"
shot xfce-panel.png

# A real click on the icon in the panel: the panel sends Activate, the popover opens under the
# icon; a second click on the icon closes it (the popover's own outside-click and the panel's
# Activate are one click: it must not close and open again).
set -- $(/usr/bin/convert "$work/before.png" "$work/after.png" -compose difference -composite \
    -threshold 5% -trim -format '%w %h %[fx:page.x] %[fx:page.y]' info:)
ix=$(($3 + $1 / 2)) iy=$(($4 + $2 / 2))
echo "icon drawn at ${1}x${2}+${3}+${4}"
[ "$1" -ge 8 ] && [ "$1" -le 48 ] && [ "$2" -ge 8 ] && [ "$2" -le 32 ] ||
    fail "what changed in the panel (${1}x${2}) is not an icon"
xdotool mousemove $ix $iy click 1
wait_until 3 popover_of "$app" >/dev/null || { xwininfo -root -tree; cat "$work/app.log"; fail "no popover after a click on the icon"; }
set -- $(geometry "$(popover_of "$app")")
px=$1 py=$2 pw=$3 ph=$4
echo "popover after a click on the icon at $px,$py ${pw}x$ph"
[ "$px" -le $ix ] && [ $((ix - px)) -le "$pw" ] || fail "the popover ($px..$((px + pw))) is not beside the icon at x=$ix"
# The panel is 32 pixels high at the top (no window manager, so no work area says so).
[ "$py" -ge 32 ] && [ "$py" -le 36 ] || fail "the popover's top $py is not at the panel's bottom (32)"
set -- $(xwininfo -root | awk '/Width:/{w=$NF} /Height:/{h=$NF} END{print w, h}')
[ "$px" -ge 0 ] && [ $((px + pw)) -le "$1" ] && [ $((py + ph)) -le "$2" ] ||
    fail "the popover ${pw}x$ph+$px+$py is not wholly on the ${1}x$2 screen"
shot xfce-click.png
sleep 0.3
xdotool click 1
sleep 1
popover_of "$app" >/dev/null && fail "a click on the icon did not close the open popover"

# A restarted panel: the item registers again with the new watcher.
kill "$panel"
wait "$panel" 2>/dev/null
wait_until 5 sh -c '! gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus --method org.freedesktop.DBus.NameHasOwner org.kde.StatusNotifierWatcher | grep -q true' ||
    fail "the watcher name outlived the panel"
start_panel
t0=$(now_ms)
wait_until 2 find_item "$app" || { watcher_items; cat "$work/app.log"; fail "the item was not registered again within 2 s of the panel's restart"; }
echo "registered again $(($(now_ms) - t0)) ms after the new panel's watcher appeared"
kill -0 "$app" || fail "lumetra is gone"
shot xfce-restarted.png
echo "PASS"
