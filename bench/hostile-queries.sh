#!/bin/sh
# Times requests that once ran for minutes on flat documents: <r> with N empty children, for
# each N given (default 10000 and 100000). Each line: seconds, N, the query and its answer
# (or its error). Run from the repository root after building the release preset:
#   bench/hostile-queries.sh [N...]
set -eu
XMLQUERY=${XMLQUERY:-build/release/bin/xmlquery}
DIR=$(mktemp -d)
trap 'rm -rf "$DIR"' EXIT

flat() {  # flat NAME COUNT: <r> with COUNT empty <NAME/> children
  awk -v name="$1" -v count="$2" 'BEGIN {
    printf "<r>"; for (i = 0; i < count; ++i) printf "<%s/>", name; print "</r>" }'
}

run() {  # run FILE QUERY
  start=$(date +%s.%N)
  answer=$("$XMLQUERY" --scalar "$1" "$2" 2>&1 || true)
  end=$(date +%s.%N)
  printf '%6.2f s  %7s  %-45s %s\n' "$(echo "$end - $start" | bc)" "$count" "$2" "$answer"
}

for count in ${*:-10000 100000}; do
  flat a "$count" > "$DIR/a.xml"
  flat v "$count" > "$DIR/v.xml"
  run "$DIR/a.xml" 'count(/r/a/ancestor::r)'
  run "$DIR/a.xml" 'count(/r/a/..)'
  run "$DIR/a.xml" 'count(/r/a[1])'
  run "$DIR/a.xml" 'count(/r/a[last()])'
  run "$DIR/a.xml" 'count(/r/a[position() = 5])'
  run "$DIR/a.xml" 'count(/r/a[position()=5])'
  run "$DIR/a.xml" 'count(/r/a[position() mod 2 = 0])'
  run "$DIR/a.xml" 'count(/r/a) + count(/r/a) + count(/r/a)'
  run "$DIR/a.xml" 'count(//./../././.././../.)'
  run "$DIR/v.xml" 'count(//v[ancestor::r])'
  run "$DIR/a.xml" 'count(/r/a[preceding-sibling::a])'
done
