#!/usr/bin/env bash
# Makes a release of this tree, committed or not, twice and compares them byte for byte: scripts/reproduce.sh. The second
# is made in another folder, at another time, as another user, in another locale and with another number of jobs.
# scripts/reproduce.sh PROGRAM [FOLDER] makes only the second, of the version of this program, and compares with it: was it
# built from this tree? KESTRANE_UPDATE_HOST and the like must be as they were for it: BUILD.txt beside a published program
# tells them, its commit, and the packages that it was built with. FOLDER, new or empty, keeps the release.
set -euo pipefail
here=$PWD
cd "$(dirname "$0")/.."
if [ $# -gt 2 ]; then
    echo "usage: scripts/reproduce.sh [PROGRAM [FOLDER]]" >&2
    exit 2
fi
scripts/packages.sh cmark faketime git locales
# A hook of git names its own repository to what it runs.
unset $(git rev-parse --local-env-vars)

# The tree as it stands, as the only commit of a repository of its own. Its date is always the same.
copy_tree() {
    mkdir -p "$1/build"
    git ls-files -z --cached --others --exclude-standard | while IFS= read -r -d '' file; do
        [ ! -e "$file" ] || printf '%s\0' "$file"
    done | tar -c --null --files-from - | tar -x -C "$1"
    git -C "$1" init --quiet
    git -C "$1" config user.name Nobody
    git -C "$1" config user.email nobody@kestrane.example
    git -C "$1" config core.hooksPath /dev/null
    git -C "$1" config commit.gpgSign false
    git -C "$1" config tag.gpgSign false
    git -C "$1" add --all
    GIT_AUTHOR_DATE=2020-02-02T12:00:00Z GIT_COMMITTER_DATE=2020-02-02T12:00:00Z git -C "$1" commit --quiet -m "$version"
}

release_here() { (cd "$1" && exec scripts/release.sh "$version" >build/release.log 2>&1) || fail "$1"; }

# In Turkish the lower case of I is not i.
release_elsewhere() {
    local locales
    locales=$scratch/locales
    mkdir -p "$locales"
    localedef --inputfile tr_TR --charmap UTF-8 "$locales/tr_TR.UTF-8"
    (
        cd "$1"
        umask 077
        exec env LOCPATH="$locales" LC_ALL=tr_TR.UTF-8 LANGUAGE=tr TZ=Pacific/Chatham USER=daemon LOGNAME=daemon \
            CMAKE_BUILD_PARALLEL_LEVEL=1 CXXFLAGS=-g NO_FAKE_STAT=1 FAKETIME_DONT_FAKE_MONOTONIC=1 \
            unshare --user --map-user=daemon --map-group=daemon faketime '2031-12-31 23:59:30' \
            scripts/release.sh "$version" >build/release.log 2>&1
    ) || fail "$1"
}

fail() {
    cat "$1/build/release.log" >&2
    echo "no release could be made in $1: see above" >&2
    exit 1
}

# compare FIRST SECOND: says how many bytes of which parts of the two programs differ.
compare_programs() {
    ! cmp --silent "$1" "$2" || return 0
    echo "not the same: $1 and $2"
    /usr/bin/python3 - "$1" "$2" <<'PYTHON'
import sys

import pefile

first, second = (open(path, "rb").read() for path in sys.argv[1:])
print(f"{len(first)} and {len(second)} bytes")
sections = pefile.PE(data=first, fast_load=True).sections
starts = [("the headers", 0), *((s.Name.rstrip(b"\0").decode(), s.PointerToRawData) for s in sections if s.SizeOfRawData)]
ends = [start for _, start in starts[1:]] + [max(len(first), len(second))]
for (name, start), end in zip(starts, ends):
    ours, theirs = first[start:end].ljust(end - start), second[start:end].ljust(end - start)
    places = [place for place, (a, b) in enumerate(zip(ours, theirs)) if a != b]
    if places:
        at = places[0]
        print(f"{name}: {len(places)} bytes, the first at {start + at:#x}: {ours[at:at + 16]} and {theirs[at:at + 16]}")
PYTHON
    return 1
}

version_of() {
    /usr/bin/python3 - "$1" <<'PYTHON'
import sys

import pefile

blocks = pefile.PE(sys.argv[1]).FileInfo[0]
[strings] = next(block.StringTable for block in blocks if block.Key == b"StringFileInfo")
print(strings.entries[b"ProductVersion"].decode())
PYTHON
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
unset KESTRANE_SIGNING_KEY # each signature is another
export KESTRANE_UPDATE_HOST=${KESTRANE_UPDATE_HOST:-kestrane.example}
if [ $# -gt 0 ]; then
    program=$(cd "$here" && realpath "$1")
    folder=$(cd "$here" && mkdir -p "${2:-$scratch/tree}" && realpath "${2:-$scratch/tree}")
    [ -z "$(ls -A "$folder")" ] || { echo "$folder is not empty" >&2; exit 2; }
    version=$(version_of "$program")
    if [ -n "${KESTRANE_MANIFEST_KEY:-}" ]; then
        # A release with a key must be signed; by whom matters only to its manifest.
        openssl ecparam -name prime256v1 -genkey -noout -out "$scratch/any.pem"
        export KESTRANE_SIGNING_KEY=$scratch/any.pem
    fi
    copy_tree "$folder"
    release_elsewhere "$folder"
    if ! compare_programs "$program" "$folder/build/release/kestrane.exe"; then
        echo "The published BUILD.txt tells which commit, values and packages it takes. The packages here are:"
        sed -n '/^Debian /,/^$/p' "$folder/build/release/BUILD.txt"
        exit 1
    fi
    echo "the same byte for byte: $program"
    exit
fi
unset KESTRANE_MANIFEST_KEY
# The list of changes may be about a later version than that of the tree.
version=$(sed -n 's/^project(kestrane VERSION \([0-9.]*\).*/\1/p; s/^## \([0-9.]*\)$/\1/p' CMakeLists.txt CHANGELOG.md |
    sort --version-sort | tail -n 1)
# Or about an earlier one, below what is new.
if awk '/^## / { if (told) print substr($0, 4); section = 1; next } section && NF { told = 1 }' CHANGELOG.md |
    grep -qxF -- "$version"; then
    version=${version%.*}.$((${version##*.} + 1))
fi
copy_tree "$scratch/first"
cp -R "$scratch/first" "$scratch/the-second-one"
release_here "$scratch/first"
release_elsewhere "$scratch/the-second-one"
compare_programs "$scratch"/{first,the-second-one}/build/release/kestrane.exe
diff --recursive --brief "$scratch"/{first,the-second-one}/build/release
echo "the same byte for byte:"
cat "$scratch/first/build/release/SHA256SUMS"
