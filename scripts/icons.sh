#!/usr/bin/env bash
# Makes the .ico files of res/icons from the drawings beside them: scripts/icons.sh
# The .ico files are kept in the tree, so only somebody who changes a drawing needs this.
# A size with a drawing of its own, NAME-SIZE.svg, is made from that; all others from NAME.svg.
set -euo pipefail
cd "$(dirname "$0")/../res/icons"

install_tools() {
    command -v rsvg-convert >/dev/null && command -v icotool >/dev/null && command -v optipng >/dev/null && return
    local as_root=()
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends librsvg2-bin icoutils optipng >/dev/null
}

# make_icon NAME SIZE...: 32-bit images with straight alpha, the 256 one as a PNG as Windows wants it.
make_icon() {
    local name=$1 size drawing images=()
    shift
    for size in "$@"; do
        drawing=$name-$size.svg
        [ -e "$drawing" ] || drawing=$name.svg
        rsvg-convert --width "$size" --height "$size" "$drawing" --output "$work/$name-$size.png"
        if [ "$size" -eq 256 ]; then
            # No reduction (-nx): a palette would be smaller, but the PNG of an icon must be 32-bit.
            optipng -quiet -o7 -nx -strip all "$work/$name-$size.png"
            images+=("--raw=$work/$name-$size.png")
        else
            images+=("$work/$name-$size.png")
        fi
    done
    # The depth is said because icotool would store a drawing of few colours as a palette without soft edges.
    icotool --create --bit-depth=32 --output "$name.ico" "${images[@]}"
}

install_tools
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
make_icon kestrane 16 20 24 32 48 64 256
for name in menu-performance menu-settings menu-about menu-exit menu-update; do
    make_icon "$name" 16 20 24 32 48
done
