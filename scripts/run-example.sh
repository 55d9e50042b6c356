#!/usr/bin/env bash
# Builds xmlquery once (preset "release", after setting the machine up) and queries the
# example document. With arguments, runs xmlquery with them instead, e.g.
#   scripts/run-example.sh --scalar examples/library.xml 'count(/library/book)'
# Once built, a run only runs xmlquery; remove build/release to build again.
set -euo pipefail
cd "$(dirname "$0")/.."

XMLQUERY=build/release/bin/xmlquery
if [ ! -x "$XMLQUERY" ] || [ ! -e build/release/bin/libXmlPlugin.so ]; then
  scripts/setup.sh
  cmake --preset release >&2
  cmake --build --preset release --target xmlquery >&2
fi

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
run --lint '//Connector[@port > 1024 and @port < 9000]/@port' || true
