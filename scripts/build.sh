#!/usr/bin/env bash
# Builds the program, even on a fresh machine, and prints its path. Arguments are passed to CMake, e.g.
# scripts/build.sh -DKESTRANE_UPDATE_HOST=updates.example.org.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh
cmake --preset windows "$@" >/dev/null
cmake --build --preset windows --target kestrane
echo "$PWD/build/windows/kestrane.exe"
