#!/usr/bin/env bash
# Runs one Windows program: scripts/wine.sh PROGRAM [ARGUMENT ...]. The exit code is the program's, but 1 if it exits
# with 0 after a crash in a window callback, which Wine swallows and only reports on stderr, or without having printed
# what EXPECTED_OUTPUT says: a stack overflow in a callback ends a program with 0. DISPLAY and WINEPREFIX are used if
# set; otherwise the program gets a screen and a prefix for this run only.
set -euo pipefail
source "$(dirname "$0")/wine-env.sh"
export WINEDEBUG=$WINEDEBUG,err+seh,err+virtual # crashes, and why a program ended before its first instruction
if [ -z "${DISPLAY:-}" ] || [ -z "${WINEPREFIX:-}" ]; then
    begin_session
fi
errors=$(mktemp)
output=$(mktemp)
trap 'rm -f "$errors" "$output"; end_session' EXIT

# Into files, not pipes: Wine's own services start with the first program and keep its output open.
code=0
"$wine" "$@" 2>"$errors" >"$output" || code=$?
cat "$output"
cat "$errors" >&2
if [ -n "${EXPECTED_OUTPUT:-}" ] && ! grep -qF "$EXPECTED_OUTPUT" "$output"; then
    echo "ended without \"$EXPECTED_OUTPUT\": $1" >&2
    [ "$code" -ne 0 ] || code=1
fi
if grep -q "ignoring exception" "$errors"; then
    echo "a crash in a window callback, swallowed by Wine: $1" >&2
    [ "$code" -ne 0 ] || code=1
fi
exit "$code"
