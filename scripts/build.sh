#!/usr/bin/env bash
# Configures (once) and builds Lumetra with Ninja into build/ (or $LUMETRA_BUILD_DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${LUMETRA_BUILD_DIR:-build}
if [ ! -f "$build/build.ninja" ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
fi
cmake --build "$build"
