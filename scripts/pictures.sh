#!/usr/bin/env bash
# Regenerates the README's pictures in docs/.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh fonts-open-sans
cmake --preset windows >/dev/null
cmake --build --preset windows --target kestrane recorder neighbour scripted_pdh scripted_iphlpapi
/usr/bin/python3 tests/desktop/pictures.py docs
