#!/usr/bin/env bash
# Installs what is missing, builds Quillarbor and starts it with the given
# arguments (none: the desktop application on the default data directory).
set -euo pipefail
cd "$(dirname "$0")/.."
jobs="$(nproc 2>/dev/null || echo 2)"

scripts/setup.sh >&2
cmake --preset release >/dev/null
cmake --build --preset release -j "$jobs" --target quillarbor >&2
exec build/release/quillarbor "$@"
