#!/usr/bin/env bash
# Builds the tests with AddressSanitizer and ThreadSanitizer (build-asan/, build-tsan/) and
# runs the threaded parts of the suite under each: the scheduler, the system monitor, the
# samplers with threads of their own, the panel item over D-Bus and the panel app.
#   scripts/sanitize.sh [address|thread]   (both when no argument)
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
filter=${LUMETRA_SANITIZE_FILTER:-'SystemMonitor|Scheduler|MemoryMonitor|ThermalMonitor|SerialExecutor|NetworkMonitor|CPUMonitor|TerminalMode|StatusItem|LumetraApp|SettingsView'}
for sanitizer in ${1:-address thread}; do
    build="build-${sanitizer:0:1}san"
    [ "$sanitizer" = address ] && build=build-asan
    [ "$sanitizer" = thread ] && build=build-tsan
    if [ ! -f "$build/build.ninja" ]; then
        cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLUMETRA_SANITIZE="$sanitizer" \
            -DLUMETRA_BUILD_BENCH=OFF
    fi
    cmake --build "$build" --target lumetra_tests lumetra
    # Qt itself is not instrumented; its internal locking shows up as noise under TSan.
    TSAN_OPTIONS="suppressions=$PWD/scripts/tsan.supp second_deadlock_stack=1" \
    ASAN_OPTIONS="detect_leaks=1" \
        ctest --test-dir "$build" -R "$filter" --output-on-failure -j2
done
