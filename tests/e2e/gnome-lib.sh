# GNOME Shell with the AppIndicator extension, started headless on the current X display and
# session bus, in the private home of e2e_home. Sets `shell` (its pid) and `shell_log`.
# Extra extensions to enable may be given, as quoted uuids separated by commas.
gnome_start() {
    gnome_environment x11 "${1:-}"
    gnome-shell --x11 --sm-disable >"$shell_log" 2>&1 &
    shell=$!
    gnome_wait_started
    xdotool key super
}

# The same shell as a Wayland compositor on a virtual monitor of $1 (e.g. 1280x800), with
# Xwayland on demand, or none when $2 is --no-x11. The test's own extension opens the shell's
# Eval to shell_eval; the overview it starts in is left.
gnome_start_wayland() {
    e2e_extension="$XDG_DATA_HOME/gnome-shell/extensions/lumetra-e2e@lumetra.test"
    mkdir -p "$e2e_extension"
    echo '{"uuid": "lumetra-e2e@lumetra.test", "name": "Lumetra tests", "description": "Opens the shell to the end-to-end tests", "shell-version": ["43"]}' \
        >"$e2e_extension/metadata.json"
    cat >"$e2e_extension/extension.js" <<'JS'
function init() {}
function enable() { global.context.unsafe_mode = true; }
function disable() { global.context.unsafe_mode = false; }
JS
    unset DISPLAY
    gnome_environment wayland "'lumetra-e2e@lumetra.test'"
    gnome-shell --wayland --headless --virtual-monitor "$1" ${2:-} >"$shell_log" 2>&1 &
    shell=$!
    export WAYLAND_DISPLAY=wayland-0
    gnome_wait_started
    evaluates() { [ "$(shell_eval '1 + 1')" = 2 ]; }
    wait_until 10 evaluates || { cat "$shell_log"; fail "the shell's Eval does not answer (the test extension is off?)"; }
    shell_eval 'Main.overview.hide()' >/dev/null
}

# The private settings, runtime folder and system bus the shell needs, for session type $1,
# the extensions $2 enabled beside AppIndicator.
gnome_environment() {
    extensions="'ubuntu-appindicators@ubuntu.com'${2:+, $2}"
    mkdir -p "$XDG_CONFIG_HOME/glib-2.0/settings"
    cat >"$XDG_CONFIG_HOME/glib-2.0/settings/keyfile" <<KEYFILE
[org/gnome/shell]
enabled-extensions=[$extensions]
disable-user-extensions=false
welcome-dialog-last-shown-version='999'

[org/gnome/desktop/interface]
enable-animations=false

[org/gnome/desktop/notifications]
show-banners=false
KEYFILE
    # XDG_CURRENT_DESKTOP as a GNOME session sets it: lumetra then shows its symbolic icon
    # beside the label.
    export GSETTINGS_BACKEND=keyfile XDG_SESSION_TYPE="$1" XDG_RUNTIME_DIR="$work/runtime" \
        XDG_CURRENT_DESKTOP=GNOME
    mkdir -p -m 700 "$XDG_RUNTIME_DIR"
    # The shell gives up when logind's seats exist but no system bus answers: give it one.
    dbus-daemon --session --address="unix:path=$XDG_RUNTIME_DIR/sysbus" --fork --print-pid >"$work/sysbus.pid"
    export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$XDG_RUNTIME_DIR/sysbus"
    dbus-update-activation-environment HOME XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME \
        ${DISPLAY:+DISPLAY} GSETTINGS_BACKEND XDG_SESSION_TYPE XDG_RUNTIME_DIR \
        DBUS_SYSTEM_BUS_ADDRESS XDG_CURRENT_DESKTOP 2>/dev/null
    shell_log="$work/shell.log"
}

gnome_wait_started() {
    wait_until 30 has_owner org.kde.StatusNotifierWatcher || { cat "$shell_log"; fail "the shell's watcher never appeared"; }
    # It starts in the overview once it is up.
    wait_until 30 grep -q 'GNOME Shell started' "$shell_log" || { cat "$shell_log"; fail "the shell never finished starting"; }
}

# shell_eval JS: what the JavaScript gives inside the shell, as text (strings unquoted).
shell_eval() {
    gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell \
        --method org.gnome.Shell.Eval "$1" 2>/dev/null |
        sed -n "s/^(true, '\(.*\)')\$/\1/p" | sed 's/^"\(.*\)"$/\1/'
}

gnome_stop() {
    kill "${shell:-}" 2>/dev/null
    wait "${shell:-}" 2>/dev/null
    [ -s "$work/sysbus.pid" ] && kill "$(cat "$work/sysbus.pid")" 2>/dev/null
    true
}

# The extension drops an item whose proxy it cannot build and says so only in the shell's log.
gnome_proxy_warnings() { grep -a 'While initalizing proxy\|While initializing proxy' "$shell_log"; }

# The top bar's right part as text: cropped, enlarged, inverted, read by tesseract.
# Geometry for a 1280-wide screen.
top_bar_text() { # screenshot -> text on one line
    /usr/bin/convert "$1" -crop 560x32+720+0 +repage -resize 300% -colorspace Gray -negate "$work/bar.png"
    tesseract "$work/bar.png" stdout 2>/dev/null | tr '\n' ' ' | tr -s ' '
}
