#!/usr/bin/env bash
# Builds the libFuzzer targets with clang into build-fuzz/ and runs one.
#   scripts/fuzz.sh                    # list the targets
#   scripts/fuzz.sh SettingsFileFuzz 600   # run one for 600 seconds
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
build=build-fuzz
if [ ! -f "$build/build.ninja" ]; then
    CC=clang CXX=clang++ cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DLUMETRA_BUILD_FUZZ=ON -DLUMETRA_BUILD_TESTS=OFF -DLUMETRA_BUILD_BENCH=OFF
fi
cmake --build "$build"
target=${1:-}
if [ -z "$target" ]; then
    echo "fuzz targets:"; ls fuzz/*Fuzz.cpp | xargs -n1 basename | sed 's/\.cpp$//;s/^/  /'
    exit 0
fi
seconds=${2:-600}
corpus="fuzz/corpus-$target"
mkdir -p "$corpus"
seeds="fuzz/seeds/$target"
[ -d "$seeds" ] || seeds=""
exec "$build/fuzz/$target" -max_total_time="$seconds" -print_final_stats=1 "$corpus" $seeds
