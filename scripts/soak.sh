#!/usr/bin/env bash
# Runs the real program through 200,000 ticks of each kind with its graphs open; after every thousand they are painted,
# the menu is opened and closed, and the shell restarts: scripts/soak.sh [TICKS]. Before that the settings dialog is
# opened and closed 200 times. Takes half an hour. Reports its memory; fails if it grows after the first thousand ticks or the
# first openings, if an icon is lost, or if the program stops painting or responding.
set -euo pipefail
cd "$(dirname "$0")/.."
ticks=${1:-200000}
# The first thousand is the baseline for the others.
if ! [[ $ticks =~ ^[1-9][0-9]*000$ && $ticks -ge 2000 ]]; then
    echo "usage: scripts/soak.sh [TICKS], in thousands from 2000" >&2
    exit 2
fi
scripts/packages.sh
cmake --preset windows >/dev/null
cmake --build --preset windows --target kestrane recorder poster scripted_pdh neighbour
export LC_ALL=C.UTF-8 KESTRANE_SOAK_TICKS=$ticks KESTRANE_SOAK_OPENINGS=200
exec /usr/bin/python3 tests/desktop/test_soak.py
