#!/usr/bin/env bash
# Sets up, builds (Release, without tests and benchmarks, in build-release/) and installs
# Lumetra into a prefix: /usr/local unless given, e.g. scripts/install.sh ~/.local
# Installs through sudo when the prefix is not writable. The list of installed files is
# build-release/install_manifest.txt.
set -euo pipefail
cd "$(dirname "$0")/.."
prefix=${1:-/usr/local}
build=${LUMETRA_INSTALL_BUILD_DIR:-build-release}

scripts/setup.sh
if [ ! -f "$build/build.ninja" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
        -DLUMETRA_BUILD_TESTS=OFF -DLUMETRA_BUILD_BENCH=OFF
fi
cmake --build "$build"

# The nearest existing folder of the prefix decides whether root is needed.
existing=$prefix
while [ ! -e "$existing" ]; do
    existing=$(dirname "$existing")
done
sudo=()
if [ ! -w "$existing" ] && [ "$(id -u)" -ne 0 ]; then
    sudo=(sudo)
fi
"${sudo[@]}" cmake --install "$build" --prefix "$prefix" --strip

echo "install: lumetra installed below $prefix"
case ":$PATH:" in
*":$prefix/bin:"*) ;;
*) echo "install: $prefix/bin is not on PATH; add it to run lumetra by name" ;;
esac
