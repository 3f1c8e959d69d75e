#!/usr/bin/env bash
# Builds Lumetra with AddressSanitizer and UndefinedBehaviorSanitizer together (build-asan/)
# and with ThreadSanitizer (build-tsan/), and runs every CTest case under each: the unit
# tests, the terminal and panel end-to-end tests and the install test. Any finding fails its
# test (undefined behaviour stops the program at once).
#   scripts/sanitize.sh [address|thread]          (both when no argument)
#   LUMETRA_SANITIZE_FILTER=REGEX scripts/sanitize.sh   # only the tests whose names match
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
filter=${LUMETRA_SANITIZE_FILTER:-}
for sanitizer in ${1:-address thread}; do
    case $sanitizer in
    address) build=build-asan flags=address,undefined ;;
    thread) build=build-tsan flags=thread ;;
    *)
        echo "sanitize.sh: unknown sanitizer '$sanitizer' (address or thread)" >&2
        exit 2
        ;;
    esac
    # Configured every time, so a build directory made before UBSan joined gains it.
    cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLUMETRA_SANITIZE="$flags" \
        -DLUMETRA_BUILD_BENCH=OFF >/dev/null
    # For the build too: it runs an instrumented tool (the icon renderer).
    # Qt itself is not instrumented; its internal locking shows up as noise under TSan.
    export TSAN_OPTIONS="suppressions=$PWD/scripts/tsan.supp second_deadlock_stack=1"
    export ASAN_OPTIONS="detect_leaks=1"
    export UBSAN_OPTIONS="print_stacktrace=1"
    # Everything, not only the tests: the install test installs the whole build.
    cmake --build "$build"
    ctest --test-dir "$build" ${filter:+-R "$filter"} --output-on-failure -j2
done
