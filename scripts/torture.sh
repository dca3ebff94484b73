#!/usr/bin/env bash
# One system call fails, and the program must go on: scripts/torture.sh. The real program, of its own objects, lives
# through all that it can do in a few seconds, again and again. In each life one call of one imported function fails, as
# tests/torture/failures.txt tells, and all others work. Then there must be no crash and no hang, settings that are old
# or new key by key, all icons two ticks later, and an end by --exit.
#
# Every call of the functions for files, the registry, the shell and drawing objects fails once, and of every other
# function the first, the second, the fiftieth, and the first from each place in the program. Where there are more than
# 150 calls, those 150 spread over all are taken; of allocations 100. All that takes two hours or more.
# KESTRANE_TORTURE_DESKTOPS tells how many lives there are at once, 2 by default.
#
#     scripts/torture.sh [update] FUNCTION CALL [PLACE]
#
# repeats one failure; with "update" in the other life, in which the program updates itself.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ $# -gt 0 ] && ! [[ $* =~ ^(update\ )?[A-Za-z_0-9]+\ [1-9][0-9]*(\ [0-9a-f]+)?$ ]]; then
    echo "usage: scripts/torture.sh [[update] FUNCTION CALL [PLACE]]" >&2
    exit 2
fi
scripts/packages.sh
cmake --preset windows >/dev/null
cmake --build --preset windows --target kestrane kestrane-torture kestrane-newer recorder neighbour poster scripted_pdh
export LC_ALL=C.UTF-8
exec /usr/bin/python3 tests/desktop/torture.py "$@"
