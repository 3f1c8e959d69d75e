#!/bin/sh
# The panel item in waybar's tray under headless sway: the item registers with waybar's
# watcher, its icon is the label drawn at its own width, the tray shows that label (read back
# from a screenshot by OCR), and waybar's custom module running `lumetra --watch --format
# waybar` beside it shows the same figures.
# $1 is the lumetra binary. Needs no X server: sway is its own headless compositor. Headless
# sway refuses to run as root, so run as root the test goes on as the system user
# lumetra-e2e (created when missing) on a private session bus. Screenshots go to
# $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$(cd "$(dirname "$1")" && pwd)/$(basename "$1")
here=$(cd "$(dirname "$0")" && pwd)

. "$here/sway-lib.sh"

if [ "${LUMETRA_E2E_INNER:-}" != 1 ]; then
    for tool in sway waybar grim tesseract dbus-run-session gdbus setpriv; do
        command -v $tool >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
    done
    [ -x /usr/bin/convert ] || { echo "SKIP: imagemagick is not installed"; exit 77; }
    sway_run_as_user waybar-sway.sh
fi

# From here on: the unprivileged user, on a private session bus.
shots=$2
. "$here/lib.sh"
e2e_home
cleanup() {
    for pid in ${app:-} ${bar:-} ${sway:-}; do kill_tree "$pid"; done
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 1' INT TERM HUP
unset DISPLAY WAYLAND_DISPLAY WAYLAND_SOCKET LC_ALL LANGUAGE
# English texts, as the patterns below expect.
export LANG=C.UTF-8
# XDG_CURRENT_DESKTOP as sway's session sets it: lumetra then draws the label as its icon.
export XDG_RUNTIME_DIR="$work/runtime" XDG_CURRENT_DESKTOP=sway XDG_SESSION_TYPE=wayland \
    NO_AT_BRIDGE=1 QT_QPA_PLATFORM=wayland
mkdir -m 700 "$XDG_RUNTIME_DIR"
# Figures that hold still for seconds: memory as a whole percentage, as text, so the tray's
# picture and the custom module can be compared.
e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0, "enabledMetrics": ["memory"], "memoryFormat": "percentageOnly", "menuBarDisplayStyle": "textOnly"'

t_start=$(now_ms)
cat >"$work/sway.conf" <<'CONF'
xwayland disable
output HEADLESS-1 resolution 1280x300 background #202020 solid_color
CONF
sway_start "$work/sway.conf"
echo "sway listens on $WAYLAND_DISPLAY after $(($(now_ms) - t_start)) ms"

# waybar's own default look (a dark bar, the tray on blue), 30 high at the top, the custom
# module left of the tray.
style=/etc/xdg/waybar/style.css
[ -r "$style" ] || fail "waybar's default style $style is missing"
cat >"$work/waybar.json" <<JSON
{
    "layer": "top",
    "position": "top",
    "height": 30,
    "modules-right": ["custom/lumetra", "tray"],
    "custom/lumetra": {
        "exec": "'$lumetra' --watch --format waybar",
        "return-type": "json"
    },
    "tray": { "icon-size": 24, "spacing": 8 }
}
JSON
waybar -c "$work/waybar.json" -s "$style" >"$work/waybar.log" 2>&1 &
bar=$!
wait_until 15 has_owner org.kde.StatusNotifierWatcher || { cat "$work/waybar.log"; fail "waybar's tray watcher never appeared"; }
echo "waybar's watcher up after $(($(now_ms) - t_start)) ms"

"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 10 find_item "$app" || { watcher_items; cat "$work/app.log" "$work/waybar.log"; fail "lumetra's item never registered with waybar's tray"; }
echo "item $item_service $item_path registered after $(($(now_ms) - t_start)) ms"
text_label() { item_label | grep -qx 'RAM [0-9]*%'; }
wait_until 5 text_label || fail "the item's label is not the memory percentage: '$(item_label)'"
# The icon is the label as an image: wider than high, at the bar's icon size.
icon_size() { item_property IconPixmap | sed -n 's/^(<\[(\([0-9]*\), \([0-9]*\),.*/\1 \2/p'; }
set -- $(icon_size)
[ $# -eq 2 ] && [ "$2" -eq 24 ] && [ "$1" -gt "$2" ] || fail "the item's icon is not a wide label: '$*' (width height)"
echo "icon ${1}x$2"

# What a person sees: the bar read back from a screenshot. The tray is the bar's blue box; the
# custom module is the text left of it. Spaces are left out of the comparison (OCR spaces are
# unreliable).
squeeze() { tr -d ' \t\n'; }
ocr() { # screenshot crop -> text
    /usr/bin/convert "$1" -crop "$2" +repage -resize 400% -colorspace Gray -threshold 55% -negate "$work/ocr.png"
    tesseract "$work/ocr.png" stdout --psm 7 2>/dev/null | tr '\n' ' ' | tr -s ' '
}
tray_box() { # screenshot -> "w h x y" of the tray's blue
    /usr/bin/convert "$1" -fuzz 3% -fill black +opaque '#2980b9' -trim \
        -format '%w %h %[fx:page.x] %[fx:page.y]' info: 2>/dev/null
}
# Screenshots until one, taken while the item's label held still, shows the label both in the
# tray and in the custom module (the module samples on its own, so it may be a tick apart).
bar_shows_label() {
    deadline=$(($(now_ms) + 30000))
    tries=0
    while [ "$(now_ms)" -lt "$deadline" ]; do
        tries=$((tries + 1))
        before=$(item_label)
        grim -g "0,0 1280x30" "$work/waybar.png" || fail "grim could not take a screenshot"
        after=$(item_label)
        [ "$before" = "$after" ] || continue
        set -- $(tray_box "$work/waybar.png")
        if [ $# -eq 4 ] && [ "$1" -gt 24 ]; then
            tray="${1}x$2+$3+$4"
            module_x=$(($3 > 400 ? $3 - 400 : 0))
            tray_read=$(ocr "$work/waybar.png" "$tray")
            module_read=$(ocr "$work/waybar.png" "$(($3 - module_x))x30+$module_x+0")
            label=$(echo "$before" | squeeze)
            echo "  screenshot $tries: label '$before', tray $tray reads '$tray_read', the module '$module_read'"
            [ "$(echo "$tray_read" | squeeze)" = "$label" ] &&
                [ "$(echo "$module_read" | squeeze)" = "$label" ] && return 0
        fi
        sleep 0.3
    done
    echo "label '$before' / '$after'; tray $tray reads '$tray_read', the module '$module_read' ($tries screenshots)"
    return 1
}
keep_shot() { cp "$work/waybar.png" "$shots/$1"; }
t_read=$(now_ms)
bar_shows_label || { keep_shot waybar-memory.png; cat "$work/waybar.log"; fail "waybar's tray and custom module do not both show the label"; }
keep_shot waybar-memory.png
echo "$(($(now_ms) - t_start)) ms: the tray ($tray) and the custom module both read '$before' ($tries screenshots in $(($(now_ms) - t_read)) ms)"
memory_tray=$tray

# Both follow the settings file: a second metric (swap, or "No swap") widens the label, the
# tray draws the new picture and the module prints the new line.
e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0, "enabledMetrics": ["memory", "swap"], "memoryFormat": "percentageOnly", "menuBarDisplayStyle": "textOnly"'
two_metrics() { item_label | grep -qx 'RAM [0-9]*%  \(SWP [0-9]*%\|No swap\)'; }
wait_until 5 two_metrics || fail "the label did not follow the settings file: '$(item_label)'"
t_read=$(now_ms)
bar_shows_label || { keep_shot waybar-swap.png; cat "$work/waybar.log"; fail "waybar's tray and custom module do not both show the new label"; }
keep_shot waybar-swap.png
echo "$(($(now_ms) - t_start)) ms: the tray ($tray) and the custom module both read '$before' ($tries screenshots in $(($(now_ms) - t_read)) ms)"
[ "${tray%%x*}" -gt "${memory_tray%%x*}" ] || fail "the tray did not widen with the label ($memory_tray, then $tray)"
kill -0 "$app" || fail "lumetra is gone"
echo "PASS in $(($(now_ms) - t_start)) ms"
