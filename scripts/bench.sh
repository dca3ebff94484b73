#!/usr/bin/env bash
# Measures the program against what it cannot do without and against Wine's own task manager: scripts/bench.sh [NAME ...]
# with the names growth, size, ticks, paint and minute, all by default (some 20 minutes). Prints tables and writes all
# single figures to build/bench.json, which keeps those of the names that are left out. What is compared runs in turn,
# and the figures are medians.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh libbenchmark-dev
cmake --preset bench >/dev/null
cmake --build --preset bench
cmake --preset windows -DKESTRANE_BENCH=ON >/dev/null
cmake --build --preset windows --target kestrane recorder poster scripted_pdh tick_floor paint_bench
export LC_ALL=C.UTF-8
/usr/bin/python3 tests/bench/bench.py build/bench.json "$@"
