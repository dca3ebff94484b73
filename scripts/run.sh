#!/usr/bin/env bash
# Builds kestrane.exe and runs it. With a display: in a Wine desktop with a taskbar, until that is closed. Without: for
# some seconds on a virtual screen, with this machine's real load; then prints the tooltips and where the pictures are.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh
if [ -z "${DISPLAY:-}" ]; then
    cmake --build --preset windows --target recorder
    exec /usr/bin/python3 tests/desktop/show.py build
fi
source scripts/wine-env.sh
# This prefix is kept, and with it the settings.
export WINEPREFIX=${WINEPREFIX:-$root/build/wine/prefix}
if [ ! -e "$WINEPREFIX/system.reg" ]; then
    copy_prefix "$WINEPREFIX"
    # As dark as on Windows, for which the icons' colours are designed.
    for color in "Menu=32 32 32" "MenuText=255 255 255"; do
        "$wine" reg add 'HKCU\Control Panel\Colors' /v "${color%%=*}" /d "${color#*=}" /f >/dev/null 2>&1
    done
fi
exec "$wine" explorer /desktop=shell,1280x800 "Z:${root//\//\\}\\build\\windows\\kestrane.exe"
