#!/usr/bin/env bash
# Generates the .ico files in res/icons from the drawings beside them: scripts/icons.sh. The .ico files are committed,
# so this is needed only after changing a drawing. A size with its own drawing, NAME-SIZE.svg, is made from that; all
# others from NAME.svg.
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

# make_icon NAME SIZE...: 32-bit images with straight alpha; large ones as PNG, a twentieth of the size.
make_icon() {
    local name=$1 size drawing images=()
    shift
    for size in "$@"; do
        drawing=$name-$size.svg
        [ -e "$drawing" ] || drawing=$name.svg
        rsvg-convert --width "$size" --height "$size" "$drawing" --output "$work/$name-$size.png"
        if [ "$size" -ge 24 ]; then
            # No reduction (-nx): a palette would be smaller, but the PNG of an icon must be 32-bit.
            optipng -quiet -o7 -nx -strip all "$work/$name-$size.png"
            images+=("--raw=$work/$name-$size.png")
        else
            images+=("$work/$name-$size.png")
        fi
    done
    # The depth is explicit because icotool would store a drawing of few colours with a palette and without soft edges.
    icotool --create --bit-depth=32 --output "$name.ico" "${images[@]}"
}

install_tools
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
make_icon kestrane 16 20 24 32 48 64 256
for name in menu-performance menu-settings menu-about menu-exit menu-update \
    page-cpu page-disk page-memory page-network section-graph button-restore button-save; do
    make_icon "$name" 16 20 24 32 48
done
