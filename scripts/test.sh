#!/usr/bin/env bash
# Builds and runs every test, even on a fresh machine: the logic natively under the sanitizers and again as a Windows
# program, the platform tests under Wine, the real program on a screen, a few thousand inputs per fuzz target, and the
# checks. Arguments are passed to ctest, e.g. scripts/test.sh -R desktop. The exit code is ctest's.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh clang libclang-rt-dev libclang-dev llvm-dev chromium cmark faketime git locales tidy
for preset in native windows fuzz; do
    cmake --preset "$preset" >/dev/null
    cmake --build --preset "$preset"
done
# One run over all build trees, with one summary at the end.
printf 'subdirs("native" "windows" "fuzz")\n' >build/CTestTestfile.cmake

# The Windows programs of the first two rings share a screen and a prefix; the caller's desktop is not touched.
unset DISPLAY WINEPREFIX
export LC_ALL=C.UTF-8
source scripts/wine-env.sh
begin_session
code=0
ctest --test-dir build -j2 --output-on-failure "$@" || code=$?
# CTest lists skipped checks, but not the reason.
grep '^skipped: ' build/Testing/Temporary/LastTest.log || true
exit $code
