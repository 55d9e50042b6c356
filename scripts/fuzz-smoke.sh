#!/usr/bin/env bash
# Builds both libFuzzer targets with clang++ and runs each for a while from its committed
# corpus. Any crash, leak, slow input (-timeout) or memory blow-up fails the run; libFuzzer
# leaves the input that did it under build/fuzz/artifacts/.
#   scripts/fuzz-smoke.sh [SECONDS]     (default 60 per target)
set -euo pipefail
cd "$(dirname "$0")/.."

SECONDS_PER_TARGET=${1:-60}
BUILD=build/fuzz

CXX=clang++ cmake -S . -B "$BUILD" -DXMLPLUGIN_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DXMLPLUGIN_BUILD_TESTS=OFF -DXMLPLUGIN_BUILD_BENCH=OFF
cmake --build "$BUILD" -j2 --target xpath_fuzzer node_reader_fuzzer

mkdir -p "$BUILD/artifacts"
for target in xpath:xpath_fuzzer reader:node_reader_fuzzer; do
  corpus=${target%%:*}
  fuzzer=${target#*:}
  # New inputs go to a scratch directory; the committed seeds are only read.
  scratch="$BUILD/corpus-$corpus"
  mkdir -p "$scratch"
  echo "== $fuzzer: ${SECONDS_PER_TARGET} s"
  "$BUILD/bin/$fuzzer" -max_total_time="$SECONDS_PER_TARGET" -timeout=5 -rss_limit_mb=2048 \
    -artifact_prefix="$BUILD/artifacts/$fuzzer-" -print_final_stats=1 \
    "$scratch" "tests/fuzz/corpus/$corpus"
done
