#!/usr/bin/env bash
# Whole-process figures of the writers on a reference store of any size:
# time (median), file size and peak memory of the CSV and XML exports, the
# grouped report, backup and restore, and `list --view week`; each export's
# time is also given as a ratio to plain_write, a plain C loop writing the
# same number of bytes to the same disk, so the ratios carry to any machine.
#
# usage: bench/scaling.sh [BUILD_DIR] [ENTRIES] [RUNS]
#        (defaults: build/release, 100000, 5)
set -euo pipefail

build_dir=${1:-build/release}
entries=${2:-100000}
runs=${3:-5}
qb=$build_dir/quillarbor
maker=$build_dir/bench/make_reference_store
plain=$build_dir/bench/plain_write
for exe in "$qb" "$maker" "$plain"; do
    if [[ ! -x $exe ]]; then
        echo "scaling: $exe is missing; build the release preset first" >&2
        exit 2
    fi
done
if [[ ! -x /usr/bin/time ]]; then
    echo "scaling: /usr/bin/time is missing (apt-get install time)" >&2
    exit 2
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/qb-scaling-XXXXXX")
trap 'rm -rf "$work"' EXIT
data=$work/data
"$maker" "$data" --entries "$entries" | head -n 1
export QUILLARBOR_NOW=2025-06-04T10:00:00
all=(--from 2016-01-01 --to 2025-12-31)

now_ns() { local t=${EPOCHREALTIME/[.,]/}; echo $((10#$t * 1000)); }

# median_ms PREP -- COMMAND...: runs PREP (may be :) before each timed run.
median_ms() {
    local prep=$1 i start end
    shift 2
    local -a times=()
    for ((i = 0; i < runs; ++i)); do
        $prep
        start=$(now_ns)
        "$@" >/dev/null
        end=$(now_ns)
        times+=($((end - start)))
    done
    printf '%s\n' "${times[@]}" | sort -n | awk '{ t[NR] = $1 } END {
        m = NR % 2 ? t[(NR + 1) / 2] : (t[NR / 2] + t[NR / 2 + 1]) / 2; printf "%.1f", m / 1e6 }'
}

peak_mb() {
    local prep=$1
    shift 2
    $prep
    /usr/bin/time -f '%M' -o "$work/peak" "$@" >/dev/null
    awk '{ printf "%.1f", $1 / 1024 }' "$work/peak"
}

fresh_restore_dir() { rm -rf "$work/restored"; }

printf '%-28s %10s %10s %10s %8s %10s\n' operation "median ms" "MB file" "plain ms" ratio "peak MB"
exports=(
    "CSV export|$work/out.csv|export csv $work/out.csv ${all[*]}"
    "XML export|$work/out.xml|export xml $work/out.xml ${all[*]}"
    "grouped HTML report|$work/out.html|report $work/out.html ${all[*]} --layout client"
)
for row in "${exports[@]}"; do
    IFS='|' read -r name file words <<<"$row"
    read -r -a args <<<"$words"
    ms=$(median_ms : -- "$qb" --data "$data" "${args[@]}")
    bytes=$(stat -c %s "$file")
    plain_ms=$(median_ms : -- "$plain" "$bytes" "$work/plain.out")
    peak=$(peak_mb : -- "$qb" --data "$data" "${args[@]}")
    awk -v n="$name" -v ms="$ms" -v b="$bytes" -v p="$plain_ms" -v peak="$peak" 'BEGIN {
        printf "%-28s %10s %10.1f %10s %7.2fx %10s\n", n, ms, b / 1048576, p, ms / p, peak }'
done

backup=(--data "$data" backup create "$work/b.qrb")
restore=(--data "$work/restored" backup restore "$work/b.qrb")
printf '%-28s %10s %10s %10s %8s %10s\n' "backup" "$(median_ms : -- "$qb" "${backup[@]}")" \
    "" "" "" "$(peak_mb : -- "$qb" "${backup[@]}")"
printf '%-28s %10s %10s %10s %8s %10s\n' "restore into an empty store" \
    "$(median_ms fresh_restore_dir -- "$qb" "${restore[@]}")" "" "" "" \
    "$(peak_mb fresh_restore_dir -- "$qb" "${restore[@]}")"
printf '%-28s %10s %10s %10s %8s %10s\n' "list --view week" \
    "$(median_ms : -- "$qb" --data "$data" list --view week)" "" "" "" \
    "$(peak_mb : -- "$qb" --data "$data" list --view week)"
