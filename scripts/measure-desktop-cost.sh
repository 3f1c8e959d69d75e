#!/usr/bin/env bash
# What Lumetra's live label costs a GNOME desktop, side by side with Debian's system-monitor
# extension, under one GNOME Shell on a virtual X server (software rendering: compare the
# cases with each other, not with a real desktop). Three cases, in one go:
#   1. the shell with the AppIndicator extension only (the baseline);
#   2. + lumetra at the 1 s interval: lumetra's own CPU plus what the shell spends on top;
#   3. + the system-monitor extension (its default graphs), lumetra stopped: what it adds.
# Each is CPU over MEASURE seconds (default 30) from /proc/PID/stat, SETTLE seconds (default 10)
# after the change. Prints each case and the ratio lumetra / extension; the budget is at most
# 1.0, the aim 0.5.
#   scripts/measure-desktop-cost.sh [path/to/lumetra]       (default: build/lumetra)
# Installs what it needs (the shell, both extensions, the en_US.UTF-8 locale the extension
# insists on) when it runs as root or with sudo.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
lumetra=$(realpath "${1:-$root/build/lumetra}")
measure=${MEASURE:-30}
settle=${SETTLE:-10}
monitor=system-monitor@paradoxxx.zero.gmail.com

if [ -z "${LUMETRA_MEASURE_INSIDE:-}" ]; then
    [ -x "$lumetra" ] || { echo "no lumetra binary at $lumetra (build it, or pass its path)" >&2; exit 1; }
    sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    packages=(xvfb xauth dbus dbus-x11 x11-utils xdotool libglib2.0-bin libgl1-mesa-dri locales
        gnome-shell gnome-shell-extension-appindicator gnome-shell-extension-system-monitor)
    missing=()
    for package in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    if [ ${#missing[@]} -gt 0 ]; then
        "${sudo[@]}" apt-get update
        DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
    fi
    # The system-monitor extension fails to start under C.UTF-8 ("invalid language tag").
    if ! locale -a | grep -qix 'en_US.utf8'; then
        "${sudo[@]}" sed -i 's/^# *en_US.UTF-8 UTF-8/en_US.UTF-8 UTF-8/' /etc/locale.gen
        "${sudo[@]}" locale-gen
    fi
    export LUMETRA_MEASURE_INSIDE=1 LANG=en_US.UTF-8 LC_ALL=en_US.UTF-8
    exec xvfb-run -a -s "-screen 0 1280x300x24 +extension GLX" dbus-run-session -- bash "$0" "$lumetra"
fi

lib=$root/tests/e2e
# shellcheck source=/dev/null
. "$lib/lib.sh"
# shellcheck source=/dev/null
. "$lib/gnome-lib.sh"
e2e_home
app=
cleanup() {
    [ -n "$app" ] && kill "$app" 2>/dev/null
    gnome_stop
    wait 2>/dev/null
    rm -rf "$work"
}
trap cleanup EXIT
hz=$(getconf CLK_TCK)
ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }

# cpu_over PID...: each process's CPU over the measuring window, in % of one core.
cpu_over() {
    local before=() after=() i=0
    for pid in "$@"; do before+=("$(ticks "$pid")"); done
    local t0
    t0=$(date +%s%N)
    sleep "$measure"
    for pid in "$@"; do after+=("$(ticks "$pid")"); done
    local elapsed=$(($(date +%s%N) - t0))
    for pid in "$@"; do
        awk -v d=$((after[i] - before[i])) -v hz="$hz" -v ns="$elapsed" 'BEGIN{printf "%.2f\n", d / hz / (ns / 1e9) * 100}'
        i=$((i + 1))
    done
}

gnome_start
echo "GNOME Shell $(gnome-shell --version | awk '{print $3}'), $(nproc) cores, ${measure} s windows, ${settle} s after each change"

sleep "$settle"
base=$(cpu_over "$shell")
echo "1. AppIndicator only:        shell ${base} %"

e2e_settings '"hasCompletedOnboarding": true, "showWelcomeScreen": false, "updateInterval": 1.0'
"$lumetra" >"$work/app.log" 2>&1 &
app=$!
wait_until 10 find_item "$app" || { cat "$work/app.log"; gnome_proxy_warnings || true; echo "lumetra's item never appeared" >&2; exit 1; }
sleep "$settle"
# An item the shell dropped costs it nothing: such a run measures nothing.
if gnome_proxy_warnings; then
    echo "the shell dropped lumetra's item (above); run again" >&2
    exit 1
fi
read -r shell_l app_l < <(cpu_over "$shell" "$app" | paste -sd' ')
echo "2. + lumetra (1 s):          shell ${shell_l} %, lumetra ${app_l} %   label: $(item_label)"
kill "$app"
wait "$app" 2>/dev/null || true
app=

shell_call() {
    gdbus call --session --dest org.gnome.Shell --object-path /org/gnome/Shell --method "org.gnome.Shell.Extensions.$1" "$monitor"
}
shell_call EnableExtension >/dev/null
sleep "$settle"
# State 1 is "enabled"; anything else (3 is "error") means it is not running.
shell_call GetExtensionInfo | grep -q "'state': <1.0>" || {
    shell_call GetExtensionInfo | grep -o "'state': <[^>]*>\|'error': <[^>]*>"
    grep -a -i 'system-monitor' "$shell_log" | tail -5
    echo "the system-monitor extension did not start" >&2
    exit 1
}
ext=$(cpu_over "$shell")
echo "3. + system-monitor:         shell ${ext} %"

awk -v b="$base" -v s="$shell_l" -v a="$app_l" -v e="$ext" 'BEGIN {
    lum = a + (s - b); added = e - b
    printf "Lumetra in all: %.2f %% (own %.2f + shell extra %.2f); system-monitor adds %.2f %%\n", lum, a, s - b, added
    if (added > 0) printf "ratio lumetra / extension: %.2f (budget 1.00, aim 0.50)\n", lum / added
    else print "ratio: the extension added nothing measurable"
}'
