#!/usr/bin/env bash
# Fails when a tracked C++ source differs from what clang-format makes of it.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z -- '*.cpp' '*.h' | xargs -0 clang-format --dry-run --Werror
echo "clang-format: every tracked source is formatted"
