#!/usr/bin/env bash
# Instructions per iteration of one benchmark, counted by callgrind.
#   scripts/icount.sh BM_CPUAndMemoryReading [iterations] [build dir]
# Runs the benchmark once with 1 iteration and once with 1 + N, both under callgrind, and
# divides the difference by N, so start-up and set-up costs cancel out.
set -euo pipefail
name=${1:?benchmark name}
n=${2:-2000}
build=${3:-build}
bench="$build/bench/lumetra_bench"
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT

count() {
    LUMETRA_BENCH_ITERATIONS=$1 valgrind --tool=callgrind --callgrind-out-file="$tmp/out.$1" \
        "$bench" --benchmark_filter="^$name(/|\$)" >/dev/null 2>"$tmp/log.$1"
    grep -E '^(summary|totals):' "$tmp/out.$1" | head -n1 | awk '{print $2}'
}

one=$(count 1)
many=$(count $((n + 1)))
echo "$name: $(( (many - one) / n )) instructions per iteration (callgrind, $n iterations)"
