#!/usr/bin/env bash
# Regenerates the pictures: the README's in docs/, and those of the web pages in site/pictures/. scripts/pictures.sh docs
# or scripts/pictures.sh site makes only those.
set -euo pipefail
cd "$(dirname "$0")/.."
[[ $* =~ ^(docs|site|)$ ]] || { echo "usage: scripts/pictures.sh [docs|site]" >&2; exit 2; }
scripts/packages.sh fonts-open-sans optipng
cmake --preset windows >/dev/null
cmake --build --preset windows --target kestrane recorder neighbour scripted_pdh scripted_iphlpapi
export LC_ALL=C.UTF-8
[ "${1:-}" = site ] || /usr/bin/python3 tests/desktop/pictures.py docs
[ "${1:-}" = docs ] || /usr/bin/python3 tests/desktop/site_pictures.py site/pictures
