#!/usr/bin/env bash
# Writes the web pages of a release: scripts/pages.sh RELEASE_FOLDER VERSION. The folder already holds kestrane.exe,
# from which the pages take the size and the hash. The same files always give the same pages. KESTRANE_WEBSITE_ID and
# KESTRANE_STATS_HOST are those of the build: without an id the pages say that it sends no statistics. The sources are in
# site/, CHANGELOG.md and CAMBIOS.md, whose top section is about the version, or still has no number; one without entries
# is left out.
set -euo pipefail
if [ $# -ne 2 ] || [ ! -f "$1/kestrane.exe" ]; then
    echo "usage: scripts/pages.sh RELEASE_FOLDER VERSION, with kestrane.exe in the folder" >&2
    exit 2
fi
folder=$(cd "$1" && pwd)
version=$2
cd "$(dirname "$0")/.."
{ command -v cmark && command -v openssl; } >/dev/null || scripts/packages.sh cmark
export LC_ALL=C.UTF-8

size=$(stat -c %s "$folder/kestrane.exe")
hash=$(openssl dgst -sha256 -r "$folder/kestrane.exe" | cut -d' ' -f1)
script=$'\n'$(<site/language.js)$'\n'
script_hash=$(printf %s "$script" | openssl dgst -sha256 -binary | base64)
statistics=$([ -z "${KESTRANE_WEBSITE_ID:-}" ] || echo yes)
stats_host=${KESTRANE_STATS_HOST:-stats.kestrane.example}

# grouped NUMBER SEPARATOR
grouped() {
    sed -E ":again; s/^([0-9]+)([0-9]{3})/\1$2\2/; t again" <<<"$1"
}

# changes FILE UNRELEASED: the list as HTML, without its title. Each version has an anchor.
changes() {
    local list top
    list=$(awk 'found; !found && /^## / { top = $0; next } !found && top && NF { found = 1; print top "\n\n" $0 }' "$1")
    top=${list%%$'\n'*}
    if [ "$top" != "## $version" ] && [ "$top" != "## $2" ]; then
        echo "$1 says nothing of $version: its first section with entries must be \"## $2\" or \"## $version\", not \"$top\"" >&2
        return 1
    fi
    sed "1s/.*/## $version/" <<<"$list" | cmark --smart | sed -E 's|^<h2>([0-9.]+)</h2>$|<h2 id="v\1">\1</h2>|'
}

# Keeps one branch of each @IF STATISTICS@, @ELSE@, @END@.
choose_branch() {
    if [ -n "$statistics" ]; then
        sed '/^@ELSE@$/,/^@END@$/d; /^@IF STATISTICS@$/d' "$1"
    else
        sed '/^@IF STATISTICS@$/,/^@ELSE@$/d; /^@END@$/d' "$1"
    fi
}

# page TEMPLATE SEPARATOR CHANGES TARGET
page() {
    local text
    text=$(choose_branch "$1")
    text=${text//@VERSION@/"$version"}
    text=${text//@SIZE@/"$(grouped "$size" "$2")"}
    text=${text//@KB@/"$(grouped $(((size + 1023) / 1024)) "$2")"}
    text=${text//@SHA256@/"$hash"}
    text=${text//@STATS_HOST@/"$stats_host"}
    text=${text//@SCRIPT_HASH@/"$script_hash"}
    text=${text//@SCRIPT@/"$script"}
    text=${text//@CHANGES@/"$3"}
    printf '%s\n' "$text" >"$folder/$4"
}

english=$(changes CHANGELOG.md Unreleased)
spanish=$(changes CAMBIOS.md "Sin publicar")
mkdir -p "$folder/es" "$folder/pictures"
page site/index.en.html , "" index.html
page site/changelog.en.html , "$english" changelog.html
page site/index.es.html . "" es/index.html
page site/changelog.es.html . "$spanish" es/changelog.html
cp site/style.css res/icons/kestrane.svg "$folder"
cp res/icons/kestrane.ico "$folder/favicon.ico"
cp site/pictures/*.png "$folder/pictures"
