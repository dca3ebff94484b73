#!/bin/sh
# Starts Wine for everything here: scripts/start-wine.sh PROGRAM [ARGUMENT ...]. It takes the random place from the heap,
# which Linux otherwise puts anywhere in the gigabyte behind Wine's loader: about once in 10,000 starts it covers the page
# at 0x7ffe0000 that each Windows program shares with the system, and the loader ends with 1, without a word.
if setarch -R true 2>/dev/null; then
    exec setarch -R wine "$@"
fi
exec wine "$@" # where a container forbids that
