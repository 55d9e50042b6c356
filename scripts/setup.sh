#!/usr/bin/env bash
# Installs everything the project needs to build and test on Debian 12. Runs as root (or
# through sudo), non-interactively, and may be run again at any time: a package already
# present is upgraded to the archive's current version (that matters for Expat, whose
# security fixes come as Debian updates).
set -euo pipefail

export DEBIAN_FRONTEND=noninteractive

SUDO=()
if [ "$(id -u)" -ne 0 ]; then
  SUDO=(sudo --preserve-env=DEBIAN_FRONTEND)
fi

PACKAGES=(
  libexpat1-dev       # the host stand-in's XML reader
  cmake make g++
  googletest libgtest-dev libgmock-dev
  libbenchmark-dev
  libxml2-dev         # reference answers for the XML name character tests; tree benchmark
  libpugixml-dev      # tree benchmark
  nlohmann-json3-dev  # xmlquery's JSON Lines protocol
  clang-format        # scripts/check-format.sh
  clang libclang-rt-14-dev  # libFuzzer targets (scripts/fuzz-smoke.sh)
  time                # scripts/cache-memory.sh
)

# Wait for another apt run on the machine rather than fail.
APT=(apt-get -o DPkg::Lock::Timeout=600 -q)

"${SUDO[@]}" "${APT[@]}" update
"${SUDO[@]}" "${APT[@]}" install -y --no-install-recommends "${PACKAGES[@]}"
