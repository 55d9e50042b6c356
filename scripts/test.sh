#!/usr/bin/env bash
# Sets the machine up, then configures, builds and runs every test with the default
# preset (Debug; binaries in build/default/bin). XMLPLUGIN_WERROR=ON in the environment turns
# compiler warnings into errors.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh
cmake --preset default -DXMLPLUGIN_WERROR="${XMLPLUGIN_WERROR:-OFF}"
cmake --build --preset default
ctest --preset default
