# Shared by the end-to-end scripts: a private home, polling with deadlines, the bus, screenshots.
# Source it with `. lib.sh` after setting `lumetra` to the binary under test.

# A private home and settings, and a UTF-8 locale (the tools that read labels back would print
# the bar style's blocks as '?' in the C locale); every process started later inherits them.
e2e_home() {
    unset LC_ALL LANGUAGE
    export LANG=C.UTF-8
    work=$(mktemp -d)
    export HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_CACHE_HOME="$work/cache" \
        XDG_DATA_HOME="$work/data" LUMETRA_UPDATE_MANIFEST_URL=http://127.0.0.1:9/
    mkdir -p "$XDG_CONFIG_HOME/lumetra" "$XDG_CACHE_HOME" "$XDG_DATA_HOME"
    # A user who finished onboarding: no welcome window in the way.
    e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0'
}

# Writes the settings file from the members given (without braces), atomically, as an editor would.
e2e_settings() {
    printf '{%s}\n' "$1" >"$XDG_CONFIG_HOME/lumetra/settings.json.new"
    mv "$XDG_CONFIG_HOME/lumetra/settings.json.new" "$XDG_CONFIG_HOME/lumetra/settings.json"
}

now_ms() { echo $(($(date +%s%N) / 1000000)); }

# wait_until SECONDS COMMAND...: runs COMMAND every 0.1 s until it succeeds; fails after SECONDS.
wait_until() {
    deadline=$(($(now_ms) + $1 * 1000))
    shift
    until "$@"; do
        [ "$(now_ms)" -lt "$deadline" ] || return 1
        sleep 0.1
    done
}

fail() {
    echo "FAIL: $*"
    exit 1
}

has_owner() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.NameHasOwner "$1" 2>/dev/null | grep -q true
}

# The pid of the process that owns a bus name (unique or well-known).
owner_pid() {
    gdbus call --session --dest org.freedesktop.DBus --object-path /org/freedesktop/DBus \
        --method org.freedesktop.DBus.GetConnectionUnixProcessID "$1" 2>/dev/null |
        sed -n 's/^(uint32 \([0-9]*\),)$/\1/p'
}

# The items the watcher lists, one "service path" a line. Hosts spell them differently:
# "service/path" (xfce), ":1.N@/path" (GNOME), or a bare service name.
watcher_items() {
    gdbus call --session --dest org.kde.StatusNotifierWatcher --object-path /StatusNotifierWatcher \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierWatcher \
        RegisteredStatusNotifierItems 2>/dev/null | grep -o "'[^']*'" | tr -d "'" |
        while read -r entry; do
            case "$entry" in
            *@/*) echo "${entry%%@*} /${entry#*@/}" ;;
            */*) echo "${entry%%/*} /${entry#*/}" ;;
            *) echo "$entry /StatusNotifierItem" ;;
            esac
        done
}

# Sets `item_service` and `item_path` to the watcher's item that process $1 owns.
find_item() {
    items=$(watcher_items)
    [ -n "$items" ] || return 1
    found=$(echo "$items" | while read -r service path; do
        [ "$(owner_pid "$service")" = "$1" ] && echo "$service $path" && break
    done)
    [ -n "$found" ] || return 1
    item_service=${found% *}
    item_path=${found#* }
}

# item_property NAME: the item's property, as gdbus prints it ("(<'text'>,)").
item_property() {
    gdbus call --session --dest "$item_service" --object-path "$item_path" \
        --method org.freedesktop.DBus.Properties.Get org.kde.StatusNotifierItem "$1" 2>/dev/null
}

# The item's label text, or nothing.
item_label() {
    item_property XAyatanaLabel | sed -n "s/^(<[\"']\(.*\)[\"']>,)\$/\1/p"
}

item_activate() {
    gdbus call --session --dest "$item_service" --object-path "$item_path" \
        --method org.kde.StatusNotifierItem.Activate "$1" "$2" >/dev/null
}

shot() {
    if [ -n "${LUMETRA_E2E_SHOTS:-}" ]; then
        mkdir -p "$LUMETRA_E2E_SHOTS" && import -window root "$LUMETRA_E2E_SHOTS/$1" 2>/dev/null
    fi
    true
}

mapped() { xwininfo -id "$1" 2>/dev/null | grep -q 'Map State: IsViewable'; }

geometry() { # window id -> "x y w h"
    xwininfo -id "$1" | awk '/Absolute upper-left X/{x=$NF} /Absolute upper-left Y/{y=$NF}
        /Width:/{w=$NF} /Height:/{h=$NF} END{print x, y, w, h}'
}

# A mapped window of process $1 that is 280 wide, or a scroll bar wider (the popover; times
# QT_SCALE_FACTOR in the X server's pixels), printed as its id.
popover_of() {
    popover_widths=$(awk -v s="${QT_SCALE_FACTOR:-1}" 'BEGIN{printf "%d %d", 280 * s + 0.5, 300 * s + 0.5}')
    for id in $(xdotool search --pid "$1" 2>/dev/null); do
        set -- $(geometry "$id") $popover_widths
        [ "${3:-0}" -ge "$5" ] && [ "${3:-0}" -le "$6" ] && mapped "$id" && echo "$id" && return 0
    done
    return 1
}
no_popover_of() { ! popover_of "$1" >/dev/null; }

# Configures one xfce4-panel at the top, 32 high across the screen, whose only plugin is the
# status tray (a StatusNotifierItem host that is also the watcher), in the private home.
xfce_panel_config() {
    channel="$XDG_CONFIG_HOME/xfce4/xfconf/xfce-perchannel-xml"
    mkdir -p "$channel"
    cat >"$channel/xfce4-panel.xml" <<'XML'
<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="length" type="uint" value="100"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray">
      <property name="square-icons" type="bool" value="false"/>
      <property name="icon-size" type="int" value="24"/>
    </property>
  </property>
</channel>
XML
    # xfconfd is started by the bus: it must see the private configuration.
    dbus-update-activation-environment HOME XDG_CONFIG_HOME XDG_CACHE_HOME XDG_DATA_HOME DISPLAY
}

# Starts the configured panel in the background, its pid in `panel`, its output appended to
# $work/panel.log; fails when its watcher is not on the bus within 15 s.
xfce_panel_start() {
    xfce4-panel --disable-wm-check >>"$work/panel.log" 2>&1 &
    panel=$!
    wait_until 15 has_owner org.kde.StatusNotifierWatcher
}
