#!/usr/bin/env bash
# Whole-process timings of the command line on the reference store: what a
# script or a user at the terminal waits for, start-up and exit included.
#
# usage: bench/process_timings.sh [BUILD_DIR]     (default build/release)
#
# Uses hyperfine when it is installed (as root it is installed with apt-get
# unless QB_BENCH_NO_INSTALL=1); otherwise times 20 runs of each command in a
# loop. Prints the median of each.
set -euo pipefail

build_dir=${1:-build/release}
runs=20
warmup=3
quillarbor=$build_dir/quillarbor
maker=$build_dir/bench/make_reference_store

for exe in "$quillarbor" "$maker"; do
    if [[ ! -x $exe ]]; then
        echo "process_timings: $exe is missing; build the release preset first" >&2
        exit 2
    fi
done

if ! command -v hyperfine >/dev/null && [[ $(id -u) == 0 ]] &&
    [[ ${QB_BENCH_NO_INSTALL:-0} != 1 ]] && command -v apt-get >/dev/null; then
    echo "installing hyperfine with apt-get ..." >&2
    apt-get install -y -qq hyperfine >/dev/null 2>&1 ||
        echo "could not install hyperfine; timing with a loop instead" >&2
fi

work=$(mktemp -d "${TMPDIR:-/tmp}/qb-timings-XXXXXX")
trap 'rm -rf "$work"' EXIT
data=$work/data

"$maker" "$data" >"$work/made.txt"
head -n 1 "$work/made.txt"

# The generator reports a client with a task of its own and the range of
# entry ids; the entry shown is the one in the middle that carries a note.
field() { awk -F'\t' -v k="$1" '$1 == k { print $2 }' "$work/made.txt"; }
client=$(field client)
task=$(field clientTask)
read -r first_id last_id < <(sed -n 's/.*(ids \([0-9]*\)-\([0-9]*\)).*/\1 \2/p' "$work/made.txt")
show_id=$((first_id + 50007))
if ((show_id > last_id)); then show_id=$first_id; fi

add_cmd=("$quillarbor" --data "$data" entry add --client "$client" --task "$task" --duration 1)
show_cmd=("$quillarbor" --data "$data" entry show "$show_id")
timer_cmd=("$quillarbor" --data "$data" timer list)

# The commands must succeed before their times mean anything; the timer
# list is timed with one timer recording and one paused.
"${add_cmd[@]}" >/dev/null
"${show_cmd[@]}" >/dev/null
"$quillarbor" --data "$data" timer record 1 --client "$client" --task "$task" --note "bench" >/dev/null
"$quillarbor" --data "$data" timer record 2 --client "$client" >/dev/null
"$quillarbor" --data "$data" timer pause 2 >/dev/null
"${timer_cmd[@]}" >/dev/null

quote() { printf "'%s'" "${1//\'/\'\\\'\'}"; }
joined() {
    local out="" word
    for word in "$@"; do out+="${out:+ }$(quote "$word")"; done
    printf '%s' "$out"
}

now_ns() {
    if [[ -n ${EPOCHREALTIME:-} ]]; then
        local t=${EPOCHREALTIME/[.,]/}
        echo $((10#$t * 1000))
    else
        date +%s%N
    fi
}

# Median in milliseconds of `runs` runs of the command, after `warmup` runs.
loop_median_ms() {
    local i start end
    local -a times=()
    for ((i = 0; i < warmup; ++i)); do "$@" >/dev/null; done
    for ((i = 0; i < runs; ++i)); do
        start=$(now_ns)
        "$@" >/dev/null
        end=$(now_ns)
        times+=($((end - start)))
    done
    printf '%s\n' "${times[@]}" | sort -n |
        awk '{ t[NR] = $1 } END { m = NR % 2 ? t[(NR + 1) / 2] : (t[NR / 2] + t[NR / 2 + 1]) / 2;
                                 printf "%.1f", m / 1e6 }'
}

hyperfine_median_ms() {
    local csv=$work/hyperfine.csv
    hyperfine --shell=none --style none --warmup "$warmup" --runs "$runs" \
        --export-csv "$csv" "$(joined "$@")" >/dev/null
    awk -F, 'NR == 1 { for (i = 1; i <= NF; ++i) if ($i == "median") c = i }
             NR == 2 { printf "%.1f", $c * 1000 }' "$csv"
}

median_ms() {
    if command -v hyperfine >/dev/null; then hyperfine_median_ms "$@"; else loop_median_ms "$@"; fi
}

if command -v hyperfine >/dev/null; then tool="hyperfine"; else tool="bash loop"; fi
echo "medians of $runs runs ($tool)"
printf '%-48s %8s ms   (target %s ms)\n' \
    "entry add --client ... --task ... --duration 1" "$(median_ms "${add_cmd[@]}")" 40 \
    "entry show $show_id" "$(median_ms "${show_cmd[@]}")" 20 \
    "timer list" "$(median_ms "${timer_cmd[@]}")" 10
