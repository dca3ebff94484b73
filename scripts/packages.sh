#!/usr/bin/env bash
# Installs the Debian packages that building and testing need and this machine lacks. Non-interactive, and silent if
# nothing is missing.
set -euo pipefail
export LC_ALL=C # in Turkish [a-z] has no i
packages=(
    # building
    cmake ninja-build g++ g++-mingw-w64-x86-64-win32 binutils-mingw-w64-x86-64 googletest
    # checking
    clang-format clang-tidy python3 python3-pefile
    # running: Wine's 64-bit half, a virtual screen, a mouse for it, fonts and pictures
    wine wine64 xvfb xdotool imagemagick fonts-dejavu-core
    # a network of the test's own, with its own authority
    iproute2 mount openssl
    # optional for Wine: encryption, and details of windows, mouse and text
    libgnutls30 libxcomposite1 libxcursor1 libxfixes3 libxi6 libxinerama1 libxrandr2 libxrender1 ca-certificates
)
# Includes the names that a package provides: Debian 13 has libgnutls30t64, which provides libgnutls30.
installed=$(dpkg-query -W -f='${Status}, ${Package}, ${Provides}\n' |
    sed -n 's/^[a-z]* ok installed, //p' | tr -s ',' '\n' | sed 's/^ *//; s/[ :(].*//')
missing=()
for package in "${packages[@]}" "$@"; do
    grep -qx "$package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}
install_missing() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >"$log" 2>&1
}
log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "installing: ${missing[*]}"
# The package lists may be recent enough; a machine without any needs them first.
install_missing && exit 0
as_root apt-get update -qq >>"$log" 2>&1 && install_missing && exit 0
cat "$log" >&2
exit 1
