#!/usr/bin/env bash
# Makes a release of the commit that is checked out: scripts/release.sh VERSION [OPTION VALUE]... builds the program
# anew, writes to build/release everything that the update host serves, and tags the commit. VERSION has three numbers,
# such as 1.2.3: Windows holds no more. Each option can also come from the environment:
#
#   --host HOST        KESTRANE_UPDATE_HOST   serves the folder; has to be said
#   --stats-host HOST  KESTRANE_STATS_HOST    is told of each check for updates
#   --website-id ID    KESTRANE_WEBSITE_ID    the program's id there; without one, nothing is told
#   --sign KEY.pem     KESTRANE_SIGNING_KEY   signs the manifest; its public half is built in
#   --key PUBLIC       KESTRANE_MANIFEST_KEY  a public key to build in instead, for the one release that changes the key
#
# The program depends on nothing but the commit, the version, these values and the compiler, all of which are told in
# BUILD.txt: see scripts/reproduce.sh. A release that fails changes nothing: the former folder stays, and there is no tag.
set -euo pipefail
here=$PWD
cd "$(dirname "$0")/.."
export LC_ALL=C.UTF-8

usage="usage: scripts/release.sh VERSION --host HOST [--stats-host HOST] [--website-id ID] [--sign KEY.pem]
       [--key PUBLIC]"
misused() {
    echo "$usage" >&2
    exit 2
}
help_if() {
    [[ $1 != -h && $1 != --help ]] || { echo "$usage"; exit; }
}
refuse() {
    echo "no release: $*" >&2
    exit 1
}

# The later of two versions.
later() { printf '%s\n' "$@" | sort --version-sort | tail -n 1; }

# What has been released, and perhaps more: the clone may have no tags, but the list of changes has a section for each
# version. The first one with entries may be about this one.
released() {
    git tag --list 'v*' | sed 's/^v//'
    awk '/^## / { if (told) print substr($0, 4); section = 1; next } section && NF { told = 1 }' CHANGELOG.md
}

check_version() {
    local number='(0|[1-9][0-9]{0,4})' part own old
    [[ $version =~ ^$number\.$number\.$number$ ]] || refuse "'$version' is not three numbers such as 1.2.3"
    for part in "${BASH_REMATCH[@]:1}"; do
        [ "$part" -le 65535 ] || refuse "$part is more than the version block can hold"
    done
    own=$(sed -n 's/^project(kestrane VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
    [ "$(later "$own" "$version")" = "$version" ] || refuse "$version is older than the tree, which says $own"
    while IFS= read -r old; do
        [[ $old =~ ^$number\.$number\.$number$ ]] || continue
        [[ $version != "$old" && $(later "$old" "$version") == "$version" ]] ||
            refuse "$version is not newer than $old, which has been released"
    done < <(released)
}

# The rules of src/update/update_hosts.cpp, and what CMake and the pages can carry, told before the build and not in the
# middle of it.
check_values() {
    local name public
    [ -n "$KESTRANE_UPDATE_HOST" ] || refuse "which host will serve it? give --host or KESTRANE_UPDATE_HOST"
    for name in KESTRANE_UPDATE_HOST KESTRANE_STATS_HOST; do
        [[ ${!name} =~ ^[a-z0-9.-]+$ ]] || refuse "'${!name}' is not a host name in lower case"
    done
    [[ $KESTRANE_WEBSITE_ID =~ ^[A-Za-z0-9\ ._-]*$ ]] || refuse "'$KESTRANE_WEBSITE_ID' is not an id"
    if [ -n "$KESTRANE_SIGNING_KEY" ]; then
        KESTRANE_SIGNING_KEY=$(cd "$here" && realpath -e -- "$KESTRANE_SIGNING_KEY") || refuse "there is no such key"
        public=$(scripts/sign.sh --public-key "$KESTRANE_SIGNING_KEY") || refuse "this key cannot sign a manifest"
        KESTRANE_MANIFEST_KEY=${KESTRANE_MANIFEST_KEY:-$public}
    elif [ -n "$KESTRANE_MANIFEST_KEY" ]; then
        refuse "a program with a key takes only a signed manifest: --key without --sign"
    fi
    [[ $KESTRANE_MANIFEST_KEY =~ ^([0-9A-Fa-f]{128})?$ ]] ||
        refuse "a public key is what scripts/sign.sh --public-key prints"
}

check_tree() {
    local changes
    changes=$(git status --porcelain --untracked-files=all)
    [ -z "$changes" ] || refuse $'there are changes that are not committed:\n'"$changes"
}

# The pages must fit the version. This too is told before the build, by making them of an empty program.
check_pages() {
    mkdir -p "$new"
    : >"$new/kestrane.exe"
    scripts/pages.sh "$new" "$version" >/dev/null || refuse "there are no pages for $version"
    rm -rf "$new"
}

announce() {
    local signed="not signed" statistics="no statistics"
    [ -z "$KESTRANE_SIGNING_KEY" ] ||
        signed="signed with $KESTRANE_SIGNING_KEY, built with the public key $KESTRANE_MANIFEST_KEY"
    [ -z "$KESTRANE_WEBSITE_ID" ] || statistics="statistics to $KESTRANE_STATS_HOST as '$KESTRANE_WEBSITE_ID'"
    echo "kestrane $version for https://$KESTRANE_UPDATE_HOST/: $signed; $statistics"
}

# From an export of the commit, so that no file that git ignores can get in; into a folder that had no other build.
build() {
    rm -rf build/release-build
    mkdir -p "$source"
    git archive "$commit" | tar -x -C "$source"
    # Whatever this shell has set for other builds.
    unset CFLAGS CXXFLAGS CPPFLAGS LDFLAGS RCFLAGS CPATH C_INCLUDE_PATH CPLUS_INCLUDE_PATH LIBRARY_PATH
    export CCACHE_DISABLE=1
    local name values=(-DKESTRANE_TESTS=OFF -DKESTRANE_VERSION="$version")
    for name in KESTRANE_UPDATE_HOST KESTRANE_STATS_HOST KESTRANE_WEBSITE_ID KESTRANE_MANIFEST_KEY; do
        values+=("-D$name=${!name}")
    done
    cmake --preset windows -S "$source" -B build/release-build/windows "${values[@]}" >/dev/null
    cmake --build build/release-build/windows --target kestrane
}

write_manifest() {
    local hash size published
    hash=$(sha256sum <"$new/kestrane.exe" | cut -d ' ' -f 1)
    size=$(stat -c %s "$new/kestrane.exe")
    published=$(TZ=UTC git log -1 --date=format-local:%Y-%m-%d --format=%cd "$commit")
    cat >"$new/latest.json" <<JSON
{
    "version": "$version",
    "url": "https://$KESTRANE_UPDATE_HOST/kestrane.exe",
    "sha256": "$hash",
    "size": $size,
    "published": "$published",
    "checkMinutes": 720
}
JSON
    if [ -n "$KESTRANE_SIGNING_KEY" ]; then
        "$source/scripts/sign.sh" "$KESTRANE_SIGNING_KEY" "$new/latest.json" >"$new/signed.json"
        mv "$new/signed.json" "$new/latest.json"
    fi
}

# What somebody else needs to build the same bytes.
write_build() {
    local name
    echo "kestrane $version"
    echo
    echo "Commit $commit"
    echo "Debian $(</etc/debian_version)"
    dpkg-query --show --showformat '${Package} ${Version}\n' g++-mingw-w64-x86-64-win32 gcc-mingw-w64-x86-64-win32 \
        gcc-mingw-w64-x86-64-win32-runtime binutils-mingw-w64-x86-64 mingw-w64-x86-64-dev cmake ninja-build
    echo
    echo "On that Debian, with these packages, this makes the same kestrane.exe again and compares it with PROGRAM:"
    echo
    echo "git checkout $commit"
    for name in KESTRANE_UPDATE_HOST KESTRANE_STATS_HOST KESTRANE_WEBSITE_ID KESTRANE_MANIFEST_KEY; do
        echo "export $name='${!name}'"
    done
    echo "scripts/reproduce.sh PROGRAM"
} >"$new/BUILD.txt"

# Of all other files.
write_sums() {
    (cd "$new" && find . -type f -printf '%P\0' | sort -z | xargs -0 sha256sum --) >build/release.sums
    mv build/release.sums "$new/SHA256SUMS"
}

# With a date and a name, if git knows one here.
tag() {
    local details=()
    ! git var GIT_COMMITTER_IDENT >/dev/null 2>&1 || details=(--annotate --message "kestrane $version")
    git tag "${details[@]}" "v$version" "$commit"
}

# The tag comes last: what fails before it is undone at the end, by what lies where.
put_in_place() {
    rm -rf "$former"
    placing=yes
    [ ! -e "$folder" ] || mv -T "$folder" "$former"
    mv -T "$new" "$folder"
    tag
    placing=
}

# An earlier run may have been killed between its last steps. Without its tag there was no release.
make_good() {
    [ -e "$former" ] || return 0
    local placed=
    [ ! -f "$folder/latest.json" ] || placed=$(sed -n 's/^ *"version": "\([0-9.]*\)",$/\1/p' "$folder/latest.json")
    [ -z "$placed" ] || ! git rev-parse --quiet --verify "refs/tags/v$placed" >/dev/null || return 0
    rm -rf "$folder"
    mv -T "$former" "$folder"
}

clean_up() {
    if [ -n "$placing" ]; then
        [ -e "$new" ] || rm -rf "$folder"
        [ ! -e "$former" ] || mv -T "$former" "$folder" || return
    fi
    rm -rf "$new" "$former" build/release.sums
}

[ $# -gt 0 ] || misused
help_if "$1"
version=$1
shift
export KESTRANE_UPDATE_HOST=${KESTRANE_UPDATE_HOST:-}
export KESTRANE_STATS_HOST=${KESTRANE_STATS_HOST:-stats.kestrane.example}
export KESTRANE_WEBSITE_ID=${KESTRANE_WEBSITE_ID:-}
KESTRANE_SIGNING_KEY=${KESTRANE_SIGNING_KEY:-}
KESTRANE_MANIFEST_KEY=${KESTRANE_MANIFEST_KEY:-}
while [ $# -gt 0 ]; do
    help_if "$1"
    [ $# -ge 2 ] || misused
    case $1 in
        --host) KESTRANE_UPDATE_HOST=$2 ;;
        --stats-host) KESTRANE_STATS_HOST=$2 ;;
        --website-id) KESTRANE_WEBSITE_ID=$2 ;;
        --sign) KESTRANE_SIGNING_KEY=$2 ;;
        --key) KESTRANE_MANIFEST_KEY=$2 ;;
        *) misused ;;
    esac
    shift 2
done
scripts/packages.sh cmark git
umask 022
source=$PWD/build/release-build/source
folder=$PWD/build/release
new=$folder.new
former=$folder.former
placing=
make_good
trap clean_up EXIT
rm -rf "$new"
check_version
check_values
check_tree
check_pages

commit=$(git rev-parse HEAD)
announce
build
install -D -m 644 build/release-build/windows/kestrane.exe "$new/kestrane.exe"
"$source/scripts/pages.sh" "$new" "$version"
write_manifest
write_build
write_sums
put_in_place
echo "Upload $folder to https://$KESTRANE_UPDATE_HOST/, latest.json last: from then on every copy is offered kestrane $version."
echo "Publish the tag: git push origin v$version. To take it back instead: git tag --delete v$version."
