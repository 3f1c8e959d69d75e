# GNOME Shell with the AppIndicator extension, started headless on the current X display and
# session bus, in the private home of e2e_home. Sets `shell` (its pid) and `shell_log`.
# Extra extensions to enable may be given, as quoted uuids separated by commas.
gnome_start() {
    extensions="'ubuntu-appindicators@ubuntu.com'${1:+, $1}"
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
    export GSETTINGS_BACKEND=keyfile XDG_SESSION_TYPE=x11 XDG_RUNTIME_DIR="$work/runtime" \
        XDG_CURRENT_DESKTOP=GNOME
    mkdir -p -m 700 "$XDG_RUNTIME_DIR"
    # The shell gives up when logind's seats exist but no system bus answers: give it one.
    dbus-daemon --session --address="unix:path=$XDG_RUNTIME_DIR/sysbus" --fork --print-pid >"$work/sysbus.pid"
    export DBUS_SYSTEM_BUS_ADDRESS="unix:path=$XDG_RUNTIME_DIR/sysbus"
    dbus-update-activation-environment HOME XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME DISPLAY \
        GSETTINGS_BACKEND XDG_SESSION_TYPE XDG_RUNTIME_DIR DBUS_SYSTEM_BUS_ADDRESS \
        XDG_CURRENT_DESKTOP 2>/dev/null
    shell_log="$work/shell.log"
    gnome-shell --x11 --sm-disable >"$shell_log" 2>&1 &
    shell=$!
    wait_until 30 has_owner org.kde.StatusNotifierWatcher || { cat "$shell_log"; fail "the shell's watcher never appeared"; }
    # It starts in the overview once it is up; leave it so the top bar shows as on a desktop.
    wait_until 30 grep -q 'GNOME Shell started' "$shell_log" || { cat "$shell_log"; fail "the shell never finished starting"; }
    xdotool key super
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
