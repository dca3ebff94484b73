#!/usr/bin/env bash
# Builds kestrane.exe and runs it. On a screen: in a Wine desktop with a taskbar, until that is closed. Without one:
# some seconds on a virtual screen, on this machine's real load, and says what the tooltips read and where pictures of
# the icons are.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh
if [ -z "${DISPLAY:-}" ]; then
    cmake --build --preset windows --target recorder
    exec /usr/bin/python3 tests/desktop/show.py build
fi
source scripts/wine-env.sh
# This one stays, and with it the settings.
export WINEPREFIX=${WINEPREFIX:-$root/build/wine/prefix}
if [ ! -e "$WINEPREFIX/system.reg" ]; then
    copy_prefix "$WINEPREFIX"
    # As dark as on Windows, for which the colours of the icons are made.
    for color in "Menu=32 32 32" "MenuText=255 255 255"; do
        wine reg add 'HKCU\Control Panel\Colors' /v "${color%%=*}" /d "${color#*=}" /f >/dev/null 2>&1
    done
fi
exec wine explorer /desktop=shell,1280x800 "Z:${root//\//\\}\\build\\windows\\kestrane.exe"
