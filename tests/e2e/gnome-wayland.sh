#!/bin/sh
# The panel app in a GNOME Shell Wayland session (Ubuntu's default), read from the shell
# itself: screenshots and xdotool do not reach a Wayland compositor.
#   xwayland (default): lumetra runs through Xwayland; the top bar shows its label, Activate
#     opens the popover under the item, and a click elsewhere or Escape closes it.
#   no-x11: no Xwayland; lumetra is a Wayland client that cannot place windows, so the
#     popover is a titled "lumetra" window inside the screen, closed by Escape and when
#     another window takes the focus.
# Run under dbus-run-session; $1 is the lumetra binary, $2 the mode. Screenshots go to
# $LUMETRA_E2E_SHOTS when it is set.
set -u
lumetra=$1
mode=${2:-xwayland}
for tool in gnome-shell dbus-update-activation-environment; do
    command -v $tool >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
[ -d /usr/share/gnome-shell/extensions/ubuntu-appindicators@ubuntu.com ] ||
    { echo "SKIP: the AppIndicator extension is not installed"; exit 77; }
if [ "$mode" = xwayland ]; then
    command -v Xwayland >/dev/null || { echo "SKIP: Xwayland is not installed"; exit 77; }
else
    ls /usr/lib/*/qt6/plugins/platforms/libqwayland-generic.so >/dev/null 2>&1 ||
        { echo "SKIP: Qt's wayland platform (qt6-wayland) is not installed"; exit 77; }
fi
here=$(dirname "$0")
. "$here/lib.sh"
. "$here/gnome-lib.sh"
e2e_home
cleanup() {
    kill ${app:-} 2>/dev/null
    gnome_stop
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
width=1280
height=800

t_start=$(now_ms)
if [ "$mode" = xwayland ]; then
    gnome_start_wayland ${width}x${height}
else
    gnome_start_wayland ${width}x${height} --no-x11
fi
echo "shell up after $(($(now_ms) - t_start)) ms"

if [ "$mode" = xwayland ]; then
    # Xwayland starts on demand at the display the shell announces, with its own authority.
    display_announced() { grep -q 'Using public X11 display' "$shell_log"; }
    wait_until 10 display_announced || { cat "$shell_log"; fail "the shell announced no X11 display"; }
    DISPLAY=$(sed -n 's/.*Using public X11 display \(:[0-9]*\).*/\1/p' "$shell_log" | head -1)
    XAUTHORITY=$(ls "$XDG_RUNTIME_DIR"/.mutter-Xwaylandauth.* 2>/dev/null | head -1)
    export DISPLAY XAUTHORITY
    client_type=1 # Meta.WindowClientType.X11
else
    client_type=0 # Meta.WindowClientType.WAYLAND
fi

e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0, "enabledMetrics": ["memory"], "memoryFormat": "percentageOnly", "menuBarDisplayStyle": "textOnly"'
"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 15 find_item "$app" || { watcher_items; cat "$work/app.log"; gnome_proxy_warnings; fail "lumetra's item never registered with the shell"; }

# The top bar as drawn: the texts of the visible labels in its right part.
bar_texts() {
    shell_eval 'function texts(actor, out) {
        if (actor instanceof imports.gi.St.Label && actor.visible) out.push(actor.text);
        for (const child of actor.get_children()) texts(child, out);
        return out;
    }
    texts(Main.panel._rightBox, []).join(" | ")'
}
# The top bar shows the item's label (read before and after, so a moving figure is no fault).
bar_shows_label() {
    before=$(item_label)
    seen=$(bar_texts)
    after=$(item_label)
    [ "$before" = "$after" ] && [ -n "$before" ] && case " | $seen | " in *" | $before | "*) true ;; *) false ;; esac
}
wait_until 10 bar_shows_label || { cat "$work/app.log"; fail "the top bar shows '$seen', the item's label is '$before' / '$after'"; }
echo "$(($(now_ms) - t_start)) ms: the top bar shows '$before'"
warnings=$(gnome_proxy_warnings) && fail "the shell could not build the item's proxy: $warnings"

# Where the shell draws the item, and where its top bar ends.
item_box=$(shell_eval 'const key = Object.keys(Main.panel.statusArea).find(k => k.startsWith("appindicator-"));
    const actor = Main.panel.statusArea[key];
    const [x, y] = actor.get_transformed_position();
    [x, y, actor.width, actor.height].map(Math.round).join(" ")')
set -- $item_box
[ $# -eq 4 ] || { cat "$shell_log"; fail "the shell has no AppIndicator item: '$item_box'"; }
item_x=$(($1 + $3 / 2))
item_y=$(($2 + $4 / 2))
bar_bottom=$(shell_eval 'Math.round(Main.panel.get_transformed_position()[1] + Main.panel.height)')
echo "the item is drawn at $1,$2 ${3}x$4; the top bar ends at y $bar_bottom"

# lumetra's windows as "title client-type x y width height focused", one a line.
windows() {
    shell_eval 'global.get_window_actors().map(a => a.meta_window).filter(w => w.get_pid() === '"$app"').map(w => {
        const r = w.get_frame_rect();
        return [w.get_title(), w.get_client_type(), r.x, r.y, r.width, r.height, w.has_focus() ? 1 : 0].join(" ");
    }).join(";")' | tr ';' '\n'
}
# The popover among them: under Xwayland the 280-wide window (or a scroll bar wider), else
# the titled one.
popover() {
    if [ "$mode" = xwayland ]; then
        windows | awk '$1 == "lumetra" && $5 >= 280 && $5 <= 300'
    else
        windows | awk '$1 == "lumetra" && $5 < 400'
    fi | grep .
}
no_popover() { ! popover >/dev/null; }
screenshot() {
    [ -n "${LUMETRA_E2E_SHOTS:-}" ] || return 0
    mkdir -p "$LUMETRA_E2E_SHOTS"
    gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell/Screenshot \
        --method org.gnome.Shell.Screenshot.Screenshot false false "$(realpath "$LUMETRA_E2E_SHOTS")/$1" >/dev/null
}
# Input as a person gives it, through the shell's own virtual devices (kept between calls:
# a device's first events are lost while it is being added).
click() {
    shell_eval 'const Clutter = imports.gi.Clutter;
    if (!global._e2ePointer)
        global._e2ePointer = Clutter.get_default_backend().get_default_seat().create_virtual_device(Clutter.InputDeviceType.POINTER_DEVICE);
    const t = global.get_current_time() * 1000;
    global._e2ePointer.notify_absolute_motion(t, '"$1, $2"');
    global._e2ePointer.notify_button(t + 1000, Clutter.BUTTON_PRIMARY, Clutter.ButtonState.PRESSED);
    global._e2ePointer.notify_button(t + 2000, Clutter.BUTTON_PRIMARY, Clutter.ButtonState.RELEASED)' >/dev/null
}
key() {
    shell_eval 'const Clutter = imports.gi.Clutter;
    if (!global._e2eKeyboard)
        global._e2eKeyboard = Clutter.get_default_backend().get_default_seat().create_virtual_device(Clutter.InputDeviceType.KEYBOARD_DEVICE);
    const t = global.get_current_time() * 1000;
    global._e2eKeyboard.notify_keyval(t, Clutter.KEY_'"$1"', Clutter.KeyState.PRESSED);
    global._e2eKeyboard.notify_keyval(t + 1000, Clutter.KEY_'"$1"', Clutter.KeyState.RELEASED)' >/dev/null
}
# Wakes both devices once, with input that changes nothing.
click $((width / 2)) $((height - 2))
key Shift_L
sleep 0.3

# The shell's click on the item: Activate at the point clicked.
open_popover() {
    item_activate $item_x $item_y
    wait_until 5 popover >/dev/null || { windows; cat "$work/app.log"; fail "Activate($item_x, $item_y) opened no popover"; }
    # The shell hands the focus over a moment later.
    focused() { popover | awk '$7 == 1' | grep -q .; }
    wait_until 3 focused
    shown=$(popover) || fail "the popover opened by Activate($item_x, $item_y) closed again at once"
    set -- $shown
    echo "$(($(now_ms) - t_start)) ms: Activate($item_x, $item_y) opened '$1' (client type $2) at $3,$4 ${5}x$6, focused: $7"
    pop_type=$2 pop_x=$3 pop_y=$4 pop_w=$5 pop_h=$6 pop_focus=$7
}

open_popover
[ "$pop_type" -eq $client_type ] || fail "the popover's client type is $pop_type, not $client_type"
# Whole, within the screen.
[ "$pop_x" -ge 0 ] && [ $((pop_x + pop_w)) -le $width ] && [ "$pop_y" -ge 0 ] && [ $((pop_y + pop_h)) -le $height ] ||
    fail "the popover at $pop_x,$pop_y ${pop_w}x$pop_h is not within the ${width}x$height screen"
if [ "$mode" = xwayland ]; then
    # Under the item: its frame starts in the screen's top-right quarter, its top edge on the
    # bar's bottom, and the item's centre above it.
    [ "$pop_x" -ge $((width / 2)) ] || fail "the popover's left edge $pop_x is not in the right half"
    [ "$pop_y" -eq "$bar_bottom" ] || fail "the popover's top $pop_y is not at the bar's bottom $bar_bottom"
    [ "$pop_x" -le "$item_x" ] && [ $((pop_x + pop_w)) -ge "$item_x" ] ||
        fail "the popover at x $pop_x..$((pop_x + pop_w)) is not under the item at x $item_x"
fi
[ "$pop_focus" -eq 1 ] || fail "the popover does not have the focus"
screenshot "gnome-wayland-$mode-popover.png"

if [ "$mode" = xwayland ]; then
    # A click on the empty desktop, a Wayland surface an X11 grab never sees.
    click 300 400
    wait_until 3 no_popover || fail "a click elsewhere did not close the popover: $(popover)"
    echo "$(($(now_ms) - t_start)) ms: a click at 300,400 closed it"
    # And a click on the item again closes what it opened.
    open_popover
    item_activate $item_x $item_y
    wait_until 3 no_popover || fail "a second Activate did not close the popover"
    open_popover
fi

key Escape
wait_until 3 no_popover || fail "Escape did not close the popover: $(popover)"
echo "$(($(now_ms) - t_start)) ms: Escape closed it"

# Another window takes the focus (the settings window, asked for by a second start): the
# popover goes.
open_popover
"$lumetra" --settings >>"$work/app.log" 2>&1
settings_window() { windows | awk -v w="$pop_w" '$1 != "lumetra" || $5 != w' | grep .; }
wait_until 5 settings_window >/dev/null || { windows; fail "lumetra --settings opened no window"; }
# The shell may keep the focus where it was for a window nobody clicked: then click it, once a
# second (the first click of a new virtual pointer is lost, and one may come before the window
# can take the focus).
last_click=0
settings_focused_or_clicked() {
    no_popover && return 0
    set -- $(settings_window | head -1)
    if [ "$7" -ne 1 ] && [ $(($(now_ms) - last_click)) -ge 1000 ]; then
        click $(($3 + 20)) $(($4 + 60))
        last_click=$(now_ms)
    fi
    return 1
}
wait_until 1 no_popover || wait_until 4 settings_focused_or_clicked ||
    { windows; cat $work/app.log; fail "the popover stayed open when another window took the focus"; }
echo "$(($(now_ms) - t_start)) ms: the settings window took the focus and the popover closed"
screenshot "gnome-wayland-$mode-settings.png"

kill -0 "$app" || fail "lumetra is gone"
echo "PASS in $(($(now_ms) - t_start)) ms"
