#!/bin/sh
# The panel item in GNOME Shell's top bar (the AppIndicator extension, Ubuntu's default): the
# item's text label is the label `lumetra --print` prints with the same settings, the top bar
# shows that text, a click on it opens the item's menu whose "Show Dashboard" opens the popover,
# and the text follows the figures as they change. The shell must build the item's proxy
# without a warning.
# Run under xvfb-run (a 1280-wide screen) and dbus-run-session; $1 is the lumetra binary.
# Screenshots go to $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$1
for tool in gnome-shell xdotool import tesseract dbus-update-activation-environment dbus-monitor python3; do
    command -v $tool >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
[ -d /usr/share/gnome-shell/extensions/ubuntu-appindicators@ubuntu.com ] ||
    { echo "SKIP: the AppIndicator extension is not installed"; exit 77; }
here=$(dirname "$0")
. "$here/lib.sh"
. "$here/gnome-lib.sh"
e2e_home
cleanup() {
    kill ${app:-} ${load:-} ${monitor:-} 2>/dev/null
    gnome_stop
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
base='"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0'

t_start=$(now_ms)
gnome_start
echo "shell up after $(($(now_ms) - t_start)) ms"

# Settings whose figures hold still for seconds: memory as a whole percentage, in the bar style
# (a mark, a level bar and the value) and then in the text style, so the label and a separate
# --print can be compared exactly.
e2e_settings "$base, \"enabledMetrics\": [\"memory\"], \"memoryFormat\": \"percentageOnly\", \"menuBarDisplayStyle\": \"miniBar\""
"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 10 find_item "$app" || { watcher_items; cat "$work/app.log"; gnome_proxy_warnings; fail "lumetra's item never registered with the shell"; }
has_label() { [ -n "$(item_label)" ]; }
wait_until 5 has_label || fail "the item has no XAyatanaLabel: $(item_property XAyatanaLabel)"

# label_is_print: the label before or after a --print run equals what it printed (the figure
# may move while it runs; a few tries find a moment when it holds still).
label_is_print() {
    tries=0
    while [ $tries -lt 5 ]; do
        before=$(item_label)
        printed=$("$lumetra" --print 2>/dev/null)
        after=$(item_label)
        [ "$printed" = "$before" ] || [ "$printed" = "$after" ] && return 0
        tries=$((tries + 1))
    done
    echo "label '$before' / '$after', --print '$printed'"
    return 1
}
label_is_print || fail "the bar-style label is not what --print prints"
echo "$(($(now_ms) - t_start)) ms: bar style: label and --print both read '$printed'"

e2e_settings "$base, \"enabledMetrics\": [\"memory\"], \"memoryFormat\": \"percentageOnly\", \"menuBarDisplayStyle\": \"textOnly\""
text_style() { item_label | grep -qx 'RAM [0-9]*%'; }
wait_until 5 text_style || fail "the label did not follow the settings file: '$(item_label)'"
label_is_print || fail "the text-style label is not what --print prints"
echo "$(($(now_ms) - t_start)) ms: text style: label and --print both read '$printed'"
warnings=$(gnome_proxy_warnings) && fail "the shell could not build the item's proxy: $warnings"

# What a person sees: the top bar read back from a screenshot. Spaces are left out of the
# comparison (OCR spaces are unreliable); everything else must match.
squeeze() { tr -d ' \t\n'; }
keep_shot() {
    if [ -n "${LUMETRA_E2E_SHOTS:-}" ]; then mkdir -p "$LUMETRA_E2E_SHOTS" && cp "$work/$1" "$LUMETRA_E2E_SHOTS/$1"; fi
}
# bar_shows_label FILE: a screenshot taken while the label held still shows it in the top bar.
bar_shows_label() {
    tries=0
    while [ $tries -lt 20 ]; do
        before=$(item_label)
        import -window root "$work/$1"
        after=$(item_label)
        if [ "$before" = "$after" ]; then
            seen=$(top_bar_text "$work/$1")
            case "$(echo "$seen" | squeeze)" in
            *"$(echo "$before" | squeeze)"*) keep_shot "$1"; return 0 ;;
            esac
        fi
        tries=$((tries + 1))
        sleep 0.3
    done
    keep_shot "$1"
    echo "label '$before' / '$after', the top bar reads '$seen'"
    return 1
}
bar_shows_label gnome-label.png || fail "the top bar does not show the label"
echo "$(($(now_ms) - t_start)) ms: the top bar shows '$before'"

# A click on the label opens the item's menu (the shell draws it from the item's D-Bus menu);
# its first entry opens the popover under the top bar; a click elsewhere hides it.
menu_shown() {
    import -window root "$work/gnome-menu.png"
    /usr/bin/convert "$work/gnome-menu.png" -crop 400x268+880+32 +repage -resize 300% -colorspace Gray -negate "$work/menu.png"
    menu=$(tesseract "$work/menu.png" stdout 2>/dev/null | squeeze)
    case "$menu" in *ShowDashboard*Settings*Quitlumetra*) return 0 ;; esac
    return 1
}
xdotool mousemove 1200 15 click 1
wait_until 5 menu_shown || { keep_shot gnome-menu.png; fail "no menu with Show Dashboard, Settings, Quit lumetra after a click on the label (read: '$menu')"; }
keep_shot gnome-menu.png
xdotool key Down Return
wait_until 5 popover_of "$app" >/dev/null || { cat "$work/app.log"; fail "Show Dashboard did not open a 280-wide popover"; }
set -- $(geometry "$(popover_of "$app")")
echo "$(($(now_ms) - t_start)) ms: the menu's Show Dashboard opened the popover at $1,$2"
[ "$2" -ge 28 ] && [ "$2" -le 40 ] || fail "the popover's top $2 is not under the top bar"
menu_gone() { ! menu_shown; }
wait_until 5 menu_gone || fail "the menu stayed open after Show Dashboard"
cp "$work/gnome-menu.png" "$work/gnome-popover.png" && keep_shot gnome-popover.png
xdotool mousemove 400 200 click 1
wait_until 3 no_popover_of "$app" || fail "a click elsewhere did not hide the popover"

# Figures that move: CPU and memory in use. A load (a busy loop and 1 GiB held) moves them.
e2e_settings "$base, \"enabledMetrics\": [\"cpu\", \"memory\"], \"memoryFormat\": \"usedOnly\", \"menuBarDisplayStyle\": \"textOnly\""
# The form of a label: figures and byte units stand for any (1023.9 MB and 1.0 GB are one form).
shape() { sed -E 's/[0-9][0-9.]* [KMGT]?B/SIZE/g; s/[0-9]+/N/g'; }
cpu_and_ram() { item_label | grep -qx 'CPU [0-9]*%  RAM [0-9.]* [KMGT]*B'; }
wait_until 5 cpu_and_ram || fail "the label did not follow the settings file: '$(item_label)'"
printed=$("$lumetra" --print 2>/dev/null)
[ "$(item_label | shape)" = "$(echo "$printed" | shape)" ] ||
    fail "label '$(item_label)' and --print '$printed' differ in form"
bar_shows_label gnome-before-load.png || fail "the top bar does not show the label before the load"
idle_label=$before
echo "$(($(now_ms) - t_start)) ms: before the load the top bar shows '$idle_label'"
# Beside a text label the icon is the fixed symbolic one: the label moves, the icon is never
# sent again (the shell would load a new picture each time).
icon_name=$(item_property IconName)
case "$icon_name" in *io.lumetra.Lumetra-symbolic*) ;; *) fail "the item's IconName is '$icon_name', not the symbolic icon";; esac
dbus-monitor --session "type='signal',interface='org.kde.StatusNotifierItem'" >"$work/signals.log" 2>&1 &
monitor=$!
python3 -c 'import sys, time; b = b"x" * (1 << 30); open(sys.argv[1], "w").close(); time.sleep(30)' "$work/held" &
load=$!
sh -c 'while :; do :; done' &
load="$load $!"
wait_until 10 test -e "$work/held" || fail "the memory load never started"
# One tick, so the next reading sees the load.
sleep 1.2
# The load moves the figures (on a shared machine other processes may move them too, even the
# other way: what counts is that the top bar follows).
label_moved() { [ "$(item_label)" != "$idle_label" ]; }
wait_until 8 label_moved || fail "the label did not follow the load: '$(item_label)'"
bar_shows_label gnome-under-load.png || fail "the top bar does not show the label under load"
echo "$(($(now_ms) - t_start)) ms: under load the top bar shows '$before' (before: '$idle_label')"
[ "$before" != "$idle_label" ] || fail "the top bar shows the same figures under load as before"
kill $load 2>/dev/null
load=
kill $monitor 2>/dev/null
labels=$(grep -c 'member=XAyatanaNewLabel' "$work/signals.log")
icons=$(grep -c 'member=NewIcon' "$work/signals.log")
echo "while the label moved: $labels XAyatanaNewLabel, $icons NewIcon"
[ "$labels" -ge 1 ] || fail "dbus-monitor saw no label change"
[ "$icons" -eq 0 ] || fail "the item sent NewIcon $icons times beside a text label"

warnings=$(gnome_proxy_warnings) && fail "the shell could not build the item's proxy: $warnings"
kill -0 "$app" || fail "lumetra is gone"
echo "PASS in $(($(now_ms) - t_start)) ms"
