#!/bin/sh
# Times the host reader of this build beside the host libraries of other builds, taking turns
# so that a change in the machine's load falls on all of them: ROUNDS rounds (default 3) of
# tree_load_bench's HostNodeReader cases, each library in turn (LD_LIBRARY_PATH puts the other
# build's libhost.so first). Prints, per library ("current" for this build) and size, the CPU
# medians of every round.
# Run from the repository root after building the release preset:
#   bench/load-compare.sh [-r ROUNDS] [DIR...]     (DIR holds another build's libhost.so)
set -eu
BENCH=${BENCH:-build/release/bin/tree_load_bench}
ROUNDS=3
if [ "${1:-}" = "-r" ]; then
  ROUNDS=$2
  shift 2
fi

run() {  # run LABEL [DIR]: one round of the reader's cases, one line per size
  label=$1
  LD_LIBRARY_PATH=${2:-} "$BENCH" --benchmark_filter=HostNodeReader --benchmark_repetitions=3 \
    --benchmark_report_aggregates_only=true 2>/dev/null |
    awk -v label="$label" '/_median/ { split($1, name, "/"); sub("_median", "", name[3]);
      printf "%s %s MB %s %s\n", label, name[3], $4, $5 }'
}

round=1
while [ "$round" -le "$ROUNDS" ]; do
  run current
  for dir in "$@"; do
    run "$dir" "$dir"
  done
  round=$((round + 1))
done | sort -s -k1,1 -k2n
