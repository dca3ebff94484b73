#!/usr/bin/env bash
# Runs one Windows program: scripts/wine.sh PROGRAM [ARGUMENT ...]. Its exit code is the program's.
set -euo pipefail
source "$(dirname "$0")/wine-env.sh"
make_prefix
if [ -z "${DISPLAY:-}" ]; then
    exec xvfb-run -a -s "-screen 0 1280x800x24 -nolisten tcp" "$0" "$@"
fi
exec wine "$@" 2> >(grep -v -e wine32 -e multiarch -e 'execute "dpkg' -e 'apt-get install' >&2)
