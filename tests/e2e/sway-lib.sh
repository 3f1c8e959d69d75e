# Shared by the end-to-end scripts that run headless sway. Source it after setting `lumetra`
# (the binary under test) and `here` (this folder, absolute).

# Stops a process and everything it started: waybar leaves its custom module's command (a
# shell and lumetra) running when it goes, dbus-run-session its bus when it is stopped.
kill_tree() {
    for child in $(pgrep -P "$1"); do kill_tree "$child"; done
    kill "$1" 2>/dev/null
}

# sway_run_as_user SCRIPT [FILE...]: headless sway refuses to run as root, so run as root
# this runs the rest of SCRIPT as the system user lumetra-e2e (created when missing), else as
# the user; either way on a private session bus, with LUMETRA_E2E_INNER=1 and the arguments
# "$lumetra" SHOTS. SCRIPT and the FILEs it needs beside lib.sh and this file are copied where
# that user can read them. Exits with the inner run's status, its screenshots copied to
# $LUMETRA_E2E_SHOTS when that is set; 77 (skip) when the user cannot be made.
sway_run_as_user() {
    script=$here/$1
    shift
    # Under /tmp when the user changes: root's own TMPDIR may be closed to others.
    if [ "$(id -u)" -eq 0 ]; then top=$(mktemp -d -p /tmp); else top=$(mktemp -d); fi
    cleanup_outer() {
        # The inner run cleans up after itself; this stops it when the test itself is stopped.
        [ -n "${inner:-}" ] && kill_tree "$inner" && wait "$inner" 2>/dev/null
        rm -rf "$top"
    }
    trap cleanup_outer EXIT
    trap 'exit 1' INT TERM HUP
    mkdir "$top/shots"
    as_user=
    if [ "$(id -u)" -eq 0 ]; then
        user='lumetra-e2e'
        if ! id -u $user >/dev/null 2>&1; then
            useradd --system --user-group --no-create-home --home-dir /nonexistent \
                --shell /usr/sbin/nologin $user ||
                { echo "SKIP: cannot create the unprivileged user $user for sway"; exit 77; }
        fi
        as_user="setpriv --reuid=$user --regid=$user --init-groups"
        # The source and build trees may lie under a folder only root can enter.
        mkdir "$top/e2e"
        for file in "$script" "$here/lib.sh" "$here/sway-lib.sh" "$@"; do
            cp "$(cd "$(dirname "$file")" && pwd)/$(basename "$file")" "$top/e2e/"
        done
        script=$top/e2e/$(basename "$script")
        if ! $as_user test -x "$lumetra"; then
            cp "$lumetra" "$top/lumetra"
            lumetra=$top/lumetra
        fi
        chown -R $user: "$top"
    fi
    LUMETRA_E2E_INNER=1 TMPDIR=$top $as_user dbus-run-session -- sh "$script" "$lumetra" "$top/shots" &
    inner=$!
    wait "$inner"
    status=$?
    inner=
    if [ -n "${LUMETRA_E2E_SHOTS:-}" ] && [ -n "$(ls "$top/shots")" ]; then
        mkdir -p "$LUMETRA_E2E_SHOTS" && cp "$top/shots/"* "$LUMETRA_E2E_SHOTS/"
    fi
    exit $status
}

# sway_start CONFIG: starts headless sway with CONFIG, its pid in `sway`, its output in
# $work/sway.log; sets WAYLAND_DISPLAY once it listens. Skips (77) where it cannot start.
sway_start() {
    WLR_BACKENDS=headless WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman \
        sway -c "$1" >"$work/sway.log" 2>&1 &
    sway=$!
    if ! wait_until 20 sway_listens || ! kill -0 "$sway" 2>/dev/null; then
        tail -n 20 "$work/sway.log"
        echo "SKIP: headless sway cannot start here"
        exit 77
    fi
}

sway_listens() {
    kill -0 "$sway" 2>/dev/null || return 0
    for socket in "$XDG_RUNTIME_DIR"/wayland-*; do
        [ -S "$socket" ] && export WAYLAND_DISPLAY="${socket##*/}" && return 0
    done
    return 1
}
