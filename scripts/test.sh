#!/usr/bin/env bash
# Installs what is missing, builds and runs every test.
#   scripts/test.sh          the dev build
#   scripts/test.sh asan     with AddressSanitizer and UndefinedBehaviorSanitizer
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-dev}"
jobs="$(nproc 2>/dev/null || echo 2)"

scripts/setup.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$jobs"
export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
ctest --preset "$preset" -j "$jobs"
