#!/bin/sh
# Starts Wine for everything here: scripts/start-wine.sh PROGRAM [ARGUMENT ...]. The heap has no random place: Linux
# puts it anywhere in the gigabyte behind Wine's loader, so now and then, about once in 10,000 starts, it covers the
# page at 0x7ffe0000 that each Windows program shares with the system. The loader then ends with 1, without a word.
if setarch -R true 2>/dev/null; then
    exec setarch -R wine "$@"
fi
exec wine "$@" # in a container that forbids it
