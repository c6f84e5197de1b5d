#!/usr/bin/env bash
# Builds the fuzz targets (the `fuzz` preset: clang, libFuzzer, AddressSanitizer
# and UBSan) and runs each for a while.
#   scripts/fuzz.sh [SECONDS] [TARGET...]     default 30 seconds, every target
#   QB_FUZZ_BUDGET=240 scripts/fuzz.sh 30     at most 240 seconds in all: with
#                                             many targets each gets less
# Each target grows its corpus in build/fuzz/corpus/TARGET (seeded from
# fuzz/corpus/TARGET); an input that fails is kept in build/fuzz/findings/
# TARGET/ and the script exits 1. QB_FUZZ_SKIP_BUILD=1 runs what is built. A one-line summary per target gives the
# executions, coverage (edges) and features reached.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-30}"
shift || true

if [ -z "${QB_FUZZ_SKIP_BUILD:-}" ]; then
    scripts/setup.sh
    cmake --preset fuzz >/dev/null
    cmake --build --preset fuzz -j "$(nproc 2>/dev/null || echo 2)"
fi

bin=build/fuzz/fuzz
if [ $# -gt 0 ]; then
    targets=("$@")
else
    targets=()
    for f in "$bin"/*_fuzz; do targets+=("$(basename "$f" _fuzz)"); done
fi
if [ -n "${QB_FUZZ_BUDGET:-}" ]; then
    share=$((QB_FUZZ_BUDGET / ${#targets[@]}))
    if [ "$share" -lt "$seconds" ]; then
        echo "fuzz: ${#targets[@]} targets in ${QB_FUZZ_BUDGET} s: $share s each"
        seconds=$share
    fi
fi

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
failed=()
for t in "${targets[@]}"; do
    corpus=build/fuzz/corpus/$t
    findings=build/fuzz/findings/$t
    log=build/fuzz/logs/$t.log
    mkdir -p "$corpus" "$findings" "$(dirname "$log")"
    status=0
    "$bin/${t}_fuzz" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="$findings/" "$corpus" "fuzz/corpus/$t" \
        >"$log" 2>&1 || status=$?
    stats=$(grep -E '^#[0-9]+.*(DONE|cov:)' "$log" | tail -1 || true)
    if [ "$status" -ne 0 ]; then
        failed+=("$t")
        echo "fuzz $t: FAILED after ${seconds} s, see $log and $findings/"
        grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error)' "$log" | head -3 || true
    else
        echo "fuzz $t: ${seconds} s, ${stats:-no statistics}"
    fi
done
if [ ${#failed[@]} -gt 0 ]; then
    echo "fuzz: findings in ${failed[*]}"
    exit 1
fi
