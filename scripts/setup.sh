#!/usr/bin/env bash
# Installs everything Lumetra needs to build, run and test, from Debian packages.
# Safe to run again: it installs only what is missing.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config git
    qt6-base-dev qt6-base-dev-tools qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools
    qt6-svg-dev libgl-dev libxcb1-dev
    # A source build started in a Wayland session without Xwayland needs the wayland platform.
    qt6-wayland
    libgtest-dev libgmock-dev googletest libbenchmark-dev
    clang libclang-rt-14-dev clang-format valgrind
    xvfb xauth dbus x11-utils libglib2.0-bin fonts-dejavu-core iproute2 util-linux dosfstools e2fsprogs procps python3 python3-psutil
    dpkg-dev desktop-file-utils appstream groff-base
    dbus-x11 xdotool imagemagick tesseract-ocr tesseract-ocr-eng libgl1-mesa-dri trayer xfce4-panel xfconf
    # The panels the end-to-end tests run against: GNOME Shell (X11 and Wayland, with and
    # without Xwayland), waybar under headless sway (screenshots by grim; with Xwayland, a
    # virtual keyboard by wtype and a native window by foot), KDE Plasma.
    gnome-shell gnome-shell-extension-appindicator xwayland
    sway waybar grim wtype foot
    plasma-workspace plasma-desktop kwin-x11
)

missing=()
for package in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
        missing+=("$package")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    echo "setup: all build and test dependencies are installed"
    exit 0
fi

sudo=()
if [ "$(id -u)" -ne 0 ]; then
    sudo=(sudo)
fi
echo "setup: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update
"${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
