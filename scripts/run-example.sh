#!/usr/bin/env bash
# Sets the machine up, builds the plug-in and xmlquery, and queries the example document.
# With arguments, runs xmlquery with them instead, e.g.
#   scripts/run-example.sh --scalar examples/library.xml 'count(/library/book)'
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset default
cmake --build --preset default --target xmlquery

XMLQUERY=build/default/bin/xmlquery
if [ "$#" -gt 0 ]; then
  exec "$XMLQUERY" "$@"
fi

run() {
  echo "\$ xmlquery $*"
  "$XMLQUERY" "$@"
  echo
}
run examples/library.xml '/library/book/title'
run --scalar examples/library.xml 'count(/library/book)'
run examples/library.xml '/library/book/@id'
run --scalar examples/library.xml '/library/book[@id="b2"]/year'
run --json examples/library.xml '/library/book/author'
