#!/usr/bin/env bash
# Installs from the Debian archive what building and testing need and this machine lacks. Asks nothing.
set -euo pipefail
packages=(
    # building
    cmake ninja-build ccache g++ g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64 googletest
    # checking
    clang-format clang-tidy python3 python3-pefile
    # running: Wine's 64-bit half, a virtual screen, a mouse for it, fonts and pictures
    wine wine64 xvfb xauth xdotool x11-utils imagemagick fonts-dejavu-core procps
)
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
