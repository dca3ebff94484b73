#!/usr/bin/env bash
# scripts/bench.sh [NAME ...] measures the program against the minimum of platform calls and against Wine's own task
# manager. Names are growth, size, ticks, paint, dialog and minute, all by default (some 30 minutes). Prints tables and
# writes all individual figures to build/bench.json, which keeps those of benchmarks not run. Competitors run in turn,
# and the figures are medians.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh libbenchmark-dev
cmake --preset bench >/dev/null
cmake --build --preset bench
cmake --preset windows -DKESTRANE_BENCH=ON >/dev/null
cmake --build --preset windows --target kestrane recorder poster neighbour scripted_pdh tick_floor paint_bench \
    dialog_bench
export LC_ALL=C.UTF-8
/usr/bin/python3 tests/bench/bench.py build/bench.json "$@"
