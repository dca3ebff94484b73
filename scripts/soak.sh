#!/usr/bin/env bash
# Runs the real program through 200,000 ticks of each kind, or with --week through those of a week at the default period,
# with its graphs open: scripts/soak.sh [TICKS|--week]. After every thousand the graphs are painted, the menu is opened and
# closed, the computer sleeps and resumes, a monitor goes, the DPI and the theme change, and the shell restarts; after every
# few thousand the settings dialog is opened, the language changes and changes back, and the checks for updates are
# switched off and on and answered. Before that the settings dialog is opened and closed 200 times. Takes half an hour, and
# a week a bit over one. Reports its memory; fails if it grows after the first thousands of ticks or the first openings, if
# an icon is lost, or if the program stops painting or responding.
set -euo pipefail
cd "$(dirname "$0")/.."
ticks=${1:-200000}
# 604,800 seconds, one tick in 1.5.
[ "$ticks" != --week ] || ticks=404000
# The first two thousand are the baseline for the others.
if ! [[ $ticks =~ ^[1-9][0-9]*000$ && $ticks -ge 3000 ]]; then
    echo "usage: scripts/soak.sh [TICKS|--week], TICKS in thousands from 3000" >&2
    exit 2
fi
scripts/packages.sh
cmake --preset windows >/dev/null
cmake --build --preset windows --target kestrane recorder poster scripted_pdh neighbour
export LC_ALL=C.UTF-8 KESTRANE_SOAK_TICKS=$ticks KESTRANE_SOAK_OPENINGS=200
exec /usr/bin/python3 tests/desktop/test_soak.py
