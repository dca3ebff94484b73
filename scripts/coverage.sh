#!/usr/bin/env bash
# Line and branch coverage of the pure code by the logic tests and the fuzz targets' seeds: prints two tables, and
# writes a page per file to build/coverage/index.html. Built without exceptions, so that the compiler's clean-up paths
# do not count; nor do defaulted comparisons.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh gcovr
out=build/coverage
cmake --preset native -B $out -DKESTRANE_SANITIZE=OFF \
    -DCMAKE_CXX_FLAGS="--coverage -fprofile-abs-path -fno-exceptions" >/dev/null
find $out -name '*.gcda' -delete
cmake --build $out --target logic_tests fuzz_seeds
$out/logic_tests --gtest_brief=1
$out/fuzz_seeds --gtest_brief=1 tests/fuzz/seeds

gcovr --root . --filter 'src/' --exclude-throw-branches --exclude-unreachable-branches \
    --exclude-branches-by-pattern '.*operator==.* = default;' --json $out/coverage.json $out
gcovr --root . --add-tracefile $out/coverage.json --sort-uncovered --html-details $out/index.html \
    --txt $out/lines.txt
gcovr --root . --add-tracefile $out/coverage.json --sort-uncovered --branches --txt $out/branches.txt
cat $out/lines.txt $out/branches.txt
