#!/usr/bin/env bash
# Fuzzes every target: scripts/fuzz.sh [SECONDS], 60 seconds each by default. Inputs that reach new code are kept in
# build/fuzz/corpus, so a second run continues from there; a finding is kept in build/fuzz/findings and makes this
# script fail. Fix a finding together with a copy of it in tests/fuzz/seeds, which the ordinary tests replay.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
# libFuzzer treats anything else as 0, and 0 as unlimited.
[[ $seconds =~ ^[1-9][0-9]*$ ]] || { echo "usage: scripts/fuzz.sh [SECONDS]" >&2; exit 2; }
scripts/packages.sh clang libclang-rt-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

failed=0
for program in build/fuzz/*_fuzz; do
    name=$(basename "$program" _fuzz)
    echo "== $name, $seconds s"
    "$program" -max_total_time="$seconds" -max_len=4096 -timeout=10 -verbosity=0 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/findings/$name-" "build/fuzz/corpus/$name" "tests/fuzz/seeds/$name" \
        >"build/fuzz/$name.log" 2>&1 || failed=1
    grep -E '^(stat::number_of_executed_units|stat::new_units_added|SUMMARY|==.*ERROR)' "build/fuzz/$name.log" || true
done
ls build/fuzz/findings
exit $failed
