#!/usr/bin/env bash
# Runs one Windows program: scripts/wine.sh PROGRAM [ARGUMENT ...]. Its exit code is the program's.
# DISPLAY and WINEPREFIX are used if set; otherwise the program gets a screen and a prefix for this run alone.
set -euo pipefail
source "$(dirname "$0")/wine-env.sh"
if [ -n "${DISPLAY:-}" ] && [ -n "${WINEPREFIX:-}" ]; then
    exec wine "$@"
fi
begin_session
wine "$@"
