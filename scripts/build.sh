#!/usr/bin/env bash
# Builds the program, even on a fresh machine, and prints its path. Arguments are passed to CMake, e.g.
# scripts/build.sh -DKESTRANE_UPDATE_HOST=updates.example.org, and are for this build alone: the preset sets the values
# that make another program, so the next one without them has the defaults again.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh
cmake --preset windows "$@" >/dev/null
cmake --build --preset windows --target kestrane
echo "$PWD/build/windows/kestrane.exe"
