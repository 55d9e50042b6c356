#!/usr/bin/env bash
# Sets the machine up, then configures, builds and runs every test with the default
# preset (Debug; binaries in build/default/bin).
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset default
cmake --build --preset default
ctest --preset default
